"""The tree over the steps of all variants: what they have in common is done once.

A step's fingerprint tells all that its stack depends on, earlier steps included. Variants whose
fingerprints agree up to a step pass through one state there; where they part, the state is kept.
"""
import dataclasses


@dataclasses.dataclass(eq=False)
class Branch:
    """A state that several variants go on from, `steps` steps from the beginning."""

    steps: int
    variant: int  # one of those that pass through it
    parent: "Branch | None" = None
    branches: list = dataclasses.field(default_factory=list)
    ends: list = dataclasses.field(default_factory=list)  # variants with no other branch on their way
    name: str = ""

    def below(self):
        """All variants that go on from here."""
        found, waiting = [], [self]
        while waiting:
            branch = waiting.pop()
            found.extend(branch.ends)
            waiting.extend(branch.branches)
        return found


@dataclasses.dataclass
class Tree:
    """All branches hang on `root`, which is the empty room before the first step."""

    root: Branch
    lengths: dict  # of each variant, in steps
    separate_steps: int  # that all variants take by themselves
    shared_steps: int  # of those, what need not be done again
    branch_count: int

    @property
    def steps(self):
        return self.separate_steps - self.shared_steps


def build_tree(plans):
    """The tree of the variants with these fingerprints: a dictionary of lists, one a step."""
    above, depth, passing, children, ends = {}, {}, {}, {}, {}
    for variant, prints in plans.items():
        previous = None
        for number, mark in enumerate(prints, 1):
            if mark not in above:
                above[mark], depth[mark], passing[mark] = previous, number, variant
                children[previous] = children.get(previous, 0) + 1
            previous = mark
        ends.setdefault(previous, []).append(variant)
    root = Branch(0, 0)
    branches = {None: root}
    for mark in above:
        if children.get(mark, 0) + len(ends.get(mark, ())) > 1:
            name = mark.hex() if isinstance(mark, bytes) else str(mark)
            branches[mark] = Branch(depth[mark], passing[mark], name=name)

    def branch_at(mark):
        while mark not in branches:
            mark = above[mark]
        return branches[mark]

    for mark, branch in branches.items():
        if mark is not None:
            branch.parent = branch_at(above[mark])
            branch.parent.branches.append(branch)
    for mark, variants in ends.items():
        branch_at(mark).ends.extend(variants)
    lengths = {variant: len(prints) for variant, prints in plans.items()}
    separate = sum(lengths.values())
    return Tree(root, lengths, separate, separate - len(above), len(branches) - 1)


def steps_by_number(tree):
    """How often a step of each number runs: a dictionary from the number to the count."""
    counts = {}

    def add(first, last):
        for number in range(first + 1, last + 1):
            counts[number] = counts.get(number, 0) + 1

    waiting = [tree.root]
    while waiting:
        branch = waiting.pop()
        if branch.parent is not None:
            add(branch.parent.steps, branch.steps)
        for variant in branch.ends:
            add(branch.steps, tree.lengths[variant])
        waiting.extend(branch.branches)
    return counts


def most_states(tree):
    """How many states are kept at once at most by one worker that goes to the depth first."""
    order, waiting = [], [tree.root]
    while waiting:
        branch = waiting.pop()
        order.append(branch)
        waiting.extend(branch.branches)
    needed = {}
    for branch in reversed(order):
        below = [needed[id(each)] for each in branch.branches]
        needed[id(branch)] = max(below, default=0) + (1 if branch.parent is not None else 0)
    return needed[id(tree.root)]
