"""What the probe puts at each storage position of the arrays it makes."""

import itertools

TYPES = ["i2", "i4", "r4", "r8", "str", "bool", "var"]
SHAPES = [(4,), (2, 3), (2, 3, 2)]


def sample(type, n):
    return {
        "i2": n,
        "i4": 100000 + n,
        "r4": n + 0.5,
        "r8": n + 0.25,
        "str": f"s{n}",
        "bool": n % 2 == 1,
        "var": n,
    }[type]


def storage_position(index, shape):
    """The first index varies fastest."""
    position, stride = 0, 1
    for i, count in zip(index, shape):
        position += i * stride
        stride *= count
    return position


def indices(shape):
    return itertools.product(*(range(count) for count in shape))
