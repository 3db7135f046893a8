import math

import pytest
from zelmo.studies.expressions import Expression, ExpressionError


class Film:
    OFFERED = ("thickness", "at")
    thickness = 12.5
    hidden = 1

    def at(self, x, y=0):
        return x + y


NAMES = {"a": 3, "b": 0.5, "film": Film(), "f": lambda x, y: 10 * x + y}


def value_of(text):
    return Expression(text, NAMES).value(NAMES)


@pytest.mark.parametrize("text, expected", [
    ("1 + 2 * a", 7), ("-a ** 2", -9.0), ("a / 2", 1.5), ("7 // 2 + 7 % 4", 6),
    ("film.thickness", 12.5), ("film.at(1, y=2)", 3), ("f(a, 4)", 34), ("max(a, 10, b)", 10),
    ("a if a > b else b", 3), ("1 < a <= 3 and not b > 1", True), ("a == 2 or b", 0.5),
    ("sqrt(16) + hypot(3, 4)", 9.0), ("(4, 5)[1]", 5), ("a in (1, 3)", True), ("cos(pi)", -1.0),
])
def test_expressions_come_to_what_python_says(text, expected):
    assert value_of(text) == expected


@pytest.mark.parametrize("text", [
    "__import__('os')", "film.__class__", "film.hidden", "(lambda: 1)()", "[x for x in (1, 2)]",
    "open('x')", "film._at", "'a' * 10", "exec('1')", "{1: 2}", "f'{a}'", "(a := 2)", "a.real",
    "1 .__class__", "().__class__.__bases__", "print(1)", "1; 2", "import os", "film['x']", "",
    "f(*(1, 2))", "f(**film)", "unknown + 1", "a @ b", "a << 2", "~a", "None", "b''",
])
def test_what_is_no_expression_over_the_names_is_refused(text):
    with pytest.raises(ExpressionError):
        value_of(text)


@pytest.mark.parametrize("text", ["10 ** 10 ** 10", "9 ** 9 ** 9 ** 9", "1 / 0", "2 ** 0.5 ** -2000",
                                  "(" * 3000 + ")" * 3000, "-" * 3900 + "1", "sqrt(-1)", "f(1)",
                                  "9223372036854775807 * 2"])
def test_what_has_no_value_is_told_and_takes_no_time(text):
    with pytest.raises(ExpressionError) as told:
        value_of(text)
    assert str(told.value)


def test_an_unknown_name_is_told_with_what_is_near():
    with pytest.raises(ExpressionError, match="did you mean film"):
        Expression("fillm.thickness", NAMES)


def test_a_name_that_is_no_number_cannot_be_reckoned_with():
    with pytest.raises(ExpressionError, match="no number"):
        value_of("film + 1")
    assert math.isnan(value_of("nan"))
