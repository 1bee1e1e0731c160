"""Reads PNG files of 8-bit RGB and RGBA, for tests: neither interpreter brings a reader."""
import struct
import zlib


class Picture(object):
    """width, height, and rows: a bytearray of RGBA for each, top first."""

    def __init__(self, path):
        with open(path, "rb") as stream:
            data = stream.read()
        assert data[:8] == b"\x89PNG\r\n\x1a\n", "no PNG file"
        packed = b""
        position = 8
        while position < len(data):
            length, kind = struct.unpack(">I4s", data[position:position + 8])
            body = data[position + 8:position + 8 + length]
            position += 12 + length
            if kind == b"IHDR":
                self.width, self.height, depth, colour = struct.unpack(">IIBB", body[:10])
                assert (depth, colour) in ((8, 2), (8, 6)), "neither 8-bit RGB nor RGBA"
                size = 3 if colour == 2 else 4
            elif kind == b"IDAT":
                packed += body
        self.rows = self._unfiltered(bytearray(zlib.decompress(packed)), size)
        if size == 3:
            self.rows = [self._opaque(row) for row in self.rows]

    @staticmethod
    def _opaque(row):
        rgba = bytearray(b"\xff") * (len(row) // 3 * 4)
        for channel in range(3):
            rgba[channel::4] = row[channel::3]
        return rgba

    def _unfiltered(self, data, size):
        stride = self.width * size
        rows = []
        above = bytearray(stride)
        for y in range(self.height):
            begin = y * (stride + 1)
            kind, row = data[begin], data[begin + 1:begin + 1 + stride]
            for x in range(stride if kind else 0):
                left = row[x - size] if x >= size else 0
                corner = above[x - size] if x >= size else 0
                if kind == 1:
                    guess = left
                elif kind == 2:
                    guess = above[x]
                elif kind == 3:
                    guess = (left + above[x]) // 2
                else:
                    p = left + above[x] - corner
                    guess = min((abs(p - left), 0, left), (abs(p - above[x]), 1, above[x]),
                                (abs(p - corner), 2, corner))[2]
                row[x] = (row[x] + guess) & 255
            rows.append(row)
            above = row
        return rows

    def pixel(self, x, y):
        """(red, green, blue, alpha)."""
        return tuple(self.rows[y][4 * x:4 * x + 4])

    def difference(self, other):
        """The share of pixels that differ visibly."""
        assert (self.width, self.height) == (other.width, other.height)
        different = 0
        for mine, its in zip(self.rows, other.rows):
            if mine != its:
                different += sum(
                    1 for x in range(0, len(mine), 4)
                    if max(abs(mine[x + i] - its[x + i]) for i in range(3)) > 8)
        return different / float(self.width * self.height)
