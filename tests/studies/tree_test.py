import random

from zelmo.studies.tree import build_tree, most_states, steps_by_number


def prints(*ways):
    """Fingerprints of steps that are named by letters: each stands for all before it as well."""
    return {n: [way[:i + 1] for i in range(len(way))] for n, way in enumerate(ways, 1)}


def test_variants_share_what_they_have_in_common():
    tree = build_tree(prints("abcd", "abce", "abf"))
    assert (tree.separate_steps, tree.steps, tree.shared_steps) == (11, 6, 5)
    (first,) = tree.root.branches
    assert first.steps == 2 and first.ends == [3]
    (second,) = first.branches
    assert second.steps == 3 and second.ends == [1, 2]
    assert sorted(first.below()) == [1, 2, 3]
    assert most_states(tree) == 2


def test_a_single_variant_needs_no_state():
    tree = build_tree(prints("abc"))
    assert tree.branch_count == 0 and tree.root.ends == [1] and most_states(tree) == 0


def test_equal_variants_are_executed_once():
    tree = build_tree(prints("abc", "abc", "abc"))
    assert tree.steps == 3
    (only,) = tree.root.branches
    assert only.steps == 3 and only.ends == [1, 2, 3]


def test_variants_without_anything_in_common_stand_alone():
    tree = build_tree(prints("ab", "cd"))
    assert tree.root.ends == [1, 2] and tree.shared_steps == 0


def test_a_variant_may_end_where_others_go_on():
    tree = build_tree(prints("ab", "abcd", "abce"))
    (outer,) = tree.root.branches
    assert outer.steps == 2 and outer.ends == [1]


def test_every_step_of_random_trees_runs_once_and_every_variant_ends_once():
    random.seed(5)
    for _ in range(200):
        ways = ["".join(random.choice("ab") for _ in range(random.randint(1, 7)))
                for _ in range(random.randint(1, 25))]
        tree = build_tree(prints(*ways))
        distinct = {way[:i + 1] for way in ways for i in range(len(way))}
        assert tree.steps == len(distinct)
        assert sum(steps_by_number(tree).values()) == len(distinct)
        assert sorted(tree.root.below()) == list(range(1, len(ways) + 1))
