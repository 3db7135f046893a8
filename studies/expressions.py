"""Expressions over a run's numbers: arithmetic, comparisons, calls and attributes that are offered.

An expression is a piece of Python's syntax that is walked here node by node. Nothing but what stands
in this file is evaluated: no statements, no imports, no names beyond those that are passed in, no
attributes but those that an object lists in `OFFERED`.
"""
import ast
import math
import operator

from .errors import did_you_mean

LONGEST = 4000
LARGEST = 2**63

FUNCTIONS = {
    "abs": abs,
    "min": min,
    "max": max,
    "round": round,
    "sqrt": math.sqrt,
    "exp": math.exp,
    "log": math.log,
    "log10": math.log10,
    "sin": math.sin,
    "cos": math.cos,
    "tan": math.tan,
    "atan": math.atan,
    "atan2": math.atan2,
    "hypot": math.hypot,
    "degrees": math.degrees,
    "radians": math.radians,
}
CONSTANTS = {"pi": math.pi, "nan": math.nan, "inf": math.inf}

_BINARY = {
    ast.Add: operator.add,
    ast.Sub: operator.sub,
    ast.Mult: operator.mul,
    ast.Div: operator.truediv,
    ast.FloorDiv: operator.floordiv,
    ast.Mod: operator.mod,
    ast.Pow: lambda base, exponent: math.pow(base, exponent),
}
_COMPARE = {
    ast.Eq: operator.eq,
    ast.NotEq: operator.ne,
    ast.Lt: operator.lt,
    ast.LtE: operator.le,
    ast.Gt: operator.gt,
    ast.GtE: operator.ge,
}


class ExpressionError(Exception):
    """What is wrong with an expression, in words."""


class Expression:
    """A text that was read and found to be an expression over `names`."""

    def __init__(self, text, names=()):
        """Reads `text`; `names` are those that Value will be given, beside FUNCTIONS and CONSTANTS.

        Raises ExpressionError for everything that is no such expression.
        """
        self.text = text
        if len(text) > LONGEST:
            raise ExpressionError(f"it has {len(text)} characters: at most {LONGEST} are read")
        try:
            self.tree = ast.parse(text.strip(), mode="eval").body
            self.names = set()
            self._check(self.tree, set(names) | set(FUNCTIONS) | set(CONSTANTS))
        except SyntaxError as error:
            raise ExpressionError(f"at character {error.offset}: {error.msg}") from None
        except (RecursionError, MemoryError):
            raise ExpressionError("it is nested too deeply") from None
        except ValueError as error:
            raise ExpressionError(str(error)) from None

    def _check(self, node, known):
        if isinstance(node, ast.Name):
            if node.id not in known:
                raise ExpressionError(f"{node.id} is unknown{did_you_mean(node.id, known)}")
            self.names.add(node.id)
            return
        if not hasattr(_Walk, "do_" + type(node).__name__):
            raise ExpressionError(
                f"{_words(node, self.text)} cannot stand in an expression: "
                "let it be a Python function"
            )
        if isinstance(node, ast.Attribute) and node.attr.startswith("_"):
            raise ExpressionError(f"{node.attr} cannot be asked for")
        for child in ast.iter_child_nodes(node):
            if isinstance(child, (ast.operator, ast.cmpop, ast.boolop, ast.unaryop, ast.expr_context)):
                continue
            self._check(child.value if isinstance(child, ast.keyword) else child, known)

    def value(self, names):
        """What the expression comes to with these names. Raises ExpressionError."""
        try:
            return _Walk({**FUNCTIONS, **CONSTANTS, **names}).do(self.tree)
        except ExpressionError:
            raise
        except ZeroDivisionError:
            raise ExpressionError("a division by zero") from None
        except OverflowError:
            raise ExpressionError("a number became too large") from None
        except (TypeError, ValueError, KeyError, IndexError, RecursionError) as error:
            text = error.args[0] if error.args else type(error).__name__
            raise ExpressionError(str(text)) from None


class _Walk:
    """Evaluates a node, each kind in a function of its own."""

    def __init__(self, names):
        self.names = names

    def do(self, node):
        return getattr(self, "do_" + type(node).__name__)(node)

    def do_Constant(self, node):
        if not isinstance(node.value, (int, float, str)):
            raise ExpressionError(f"{node.value!r} is neither a number nor a text")
        return node.value

    def do_Name(self, node):
        return self.names[node.id]

    def do_BinOp(self, node):
        if type(node.op) not in _BINARY:
            raise ExpressionError("only + - * / // % ** stand between numbers")
        left, right = _number(self.do(node.left)), _number(self.do(node.right))
        return _number(_BINARY[type(node.op)](left, right))

    def do_UnaryOp(self, node):
        value = self.do(node.operand)
        if isinstance(node.op, ast.Not):
            return not value
        if isinstance(node.op, ast.Invert):
            raise ExpressionError("~ cannot stand in front of a number")
        return -_number(value) if isinstance(node.op, ast.USub) else _number(value)

    def do_BoolOp(self, node):
        wanted = isinstance(node.op, ast.Or)
        value = not wanted
        for each in node.values:
            value = self.do(each)
            if bool(value) == wanted:
                break
        return value

    def do_Compare(self, node):
        left = self.do(node.left)
        for op, each in zip(node.ops, node.comparators):
            right = self.do(each)
            if isinstance(op, (ast.In, ast.NotIn)):
                fits = (left in right) == isinstance(op, ast.In)
            elif type(op) in _COMPARE:
                fits = _COMPARE[type(op)](left, right)
            else:
                raise ExpressionError("'is' compares no numbers: let it be ==")
            if not fits:
                return False
            left = right
        return True

    def do_IfExp(self, node):
        return self.do(node.body if self.do(node.test) else node.orelse)

    def do_Tuple(self, node):
        return tuple(self.do(each) for each in node.elts)

    do_List = do_Tuple

    def do_Subscript(self, node):
        base = self.do(node.value)
        if not isinstance(base, tuple) and "[]" not in getattr(type(base), "OFFERED", ()):
            raise ExpressionError("only lists, layers and parts stand in front of [ ]")
        return base[self.do(node.slice)]

    def do_Attribute(self, node):
        base = self.do(node.value)
        offered = getattr(type(base), "OFFERED", ())
        if node.attr not in offered:
            known = [each for each in offered if each != "[]"]
            raise ExpressionError(f".{node.attr} is unknown{did_you_mean(node.attr, known)}")
        return getattr(base, node.attr)

    def do_Call(self, node):
        function = self.do(node.func)
        if not callable(function):
            raise ExpressionError("only functions stand in front of ( )")
        if any(each.arg is None for each in node.keywords):
            raise ExpressionError("** cannot stand in a call")
        values = [self.do(each) for each in node.args]
        return function(*values, **{each.arg: self.do(each.value) for each in node.keywords})


def _number(value):
    if hasattr(value, "item"):
        value = value.item()
    if isinstance(value, int) and abs(value) >= LARGEST:
        raise ExpressionError("a number became too large")
    if not isinstance(value, (int, float)):
        raise ExpressionError(f"{type(value).__name__} is no number: ask for one of its numbers")
    return value


def _words(node, text):
    return ast.get_source_segment(text.strip(), node) or type(node).__name__
