"""Compares pictures as one who looks at them does: by blocks, so that a driver that sets an edge
half a pixel aside makes no difference."""
from __future__ import division

BLOCK = 8


def blocks(rows, width, height):
    """The mean red, green and blue of each block of 8 by 8 pixels of rows of RGBA, in one list."""
    result = []
    for top in range(0, height, BLOCK):
        band = rows[top:top + BLOCK]
        for left in range(0, width, BLOCK):
            right = min(left + BLOCK, width)
            count = (right - left) * len(band)
            for channel in range(3):
                total = sum(sum(row[4 * left + channel:4 * right:4]) for row in band)
                result.append(total / count)
    return result


class Difference(object):
    """How far apart two lists of blocks are, in steps of 255.

    mean   over all blocks and colours
    worst  of any block in any colour
    """

    def __init__(self, blocks, others):
        assert len(blocks) == len(others)
        apart = [abs(a - b) for a, b in zip(blocks, others)]
        self.mean = sum(apart) / len(apart)
        self.worst = max(apart)

    def __repr__(self):
        return "mean %.3f, worst block %.2f" % (self.mean, self.worst)
