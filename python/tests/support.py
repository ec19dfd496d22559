"""Helpers the tests share: the probe's array samples, and errors."""

import itertools

import pytest

import seluvorne

TYPES = ["i2", "i4", "r4", "r8", "str", "bool", "var"]
SHAPES = [(4,), (2, 3), (2, 3, 2)]


def sample(type, n):
    """What the probe puts at storage position n of an array it fills."""
    return {"i2": n, "i4": 100000 + n, "str": f"s{n}", "bool": n % 2 == 1, "var": n}.get(type, n + 0.5)


def storage_position(index, shape):
    """The first index varies fastest."""
    position, stride = 0, 1
    for i, count in zip(index, shape):
        position += i * stride
        stride *= count
    return position


def filled(type, shape):
    """An Array holding at each index the sample of its storage position."""
    array = seluvorne.Array(type, shape)
    for index in itertools.product(*(range(count) for count in shape)):
        array[index] = sample(type, storage_position(index, shape))
    return array


def error_of(call, *args, **kwargs):
    """The seluvorne.Error that call(*args, **kwargs) raises."""
    with pytest.raises(seluvorne.Error) as raised:
        call(*args, **kwargs)
    return raised.value
