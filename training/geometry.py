"""Where the crop of a hand lies, and the way between picture and crop coordinates.

Pictures' coordinates are continuous pixels (the centre of pixel i is i + 0.5), y down.
"""
import math

import numpy as np

WRIST, MIDDLE_MCP, INDEX_MCP, LITTLE_MCP = 0, 9, 5, 17
THUMB_TIP, INDEX_TIP = 4, 8
SEVEN = [0, 4, 8, 9, 12, 16, 20]  # The joints that the gesture rules use.
CROP_PER_SIZE = 1.5
# Shares of the distance between wrist and middle MCP by which the reported ones move.
WRIST_SHIFT, MCP_SHIFT = 0.12, 0.10
REPORTED_PALM = 1 - WRIST_SHIFT - MCP_SHIFT  # What is left of that distance.


def frame_of(joints):
    """(centre x, centre y, size, angle) of a hand as the finder reports them."""
    up = joints[MIDDLE_MCP] - joints[WRIST]
    angle = math.atan2(up[1], up[0]) + math.pi / 2
    c, s = math.cos(angle), math.sin(angle)
    turned = joints @ np.array([[c, -s], [s, c]])
    low, high = turned.min(0), turned.max(0)
    size = max(float((high - low).max()), 1.1 * float(np.hypot(*up)))
    x, y = (low + high) / 2
    return c * x - s * y, s * x + c * y, size, angle


def crop_matrix(centre_x, centre_y, side, angle, pixels, flip=False, stretch=1.0):
    """2 x 3 matrix from crop pixels to picture pixels, continuous coordinates."""
    c, s = math.cos(angle) * side / pixels, math.sin(angle) * side / pixels
    along, across = (-stretch if flip else stretch), 1 / stretch
    matrix = np.array([[c * along, -s * across, 0], [s * along, c * across, 0]])
    matrix[:, 2] = np.array([centre_x, centre_y]) - matrix[:, :2] @ np.array([pixels / 2, pixels / 2])
    return matrix


def invert(matrix):
    inverse = np.linalg.inv(matrix[:, :2])
    return np.hstack([inverse, -inverse @ matrix[:, 2:]])


def transform(matrix, points):
    return points @ matrix[:, :2].T + matrix[:, 2]


def warp(picture, matrix, width, height, border):
    """The picture seen through `matrix` (output to picture, continuous coordinates)."""
    import cv2

    indices = matrix.copy()  # Pixel indices count from the first pixel's centre.
    indices[:, 2] += matrix[:, :2] @ np.array([0.5, 0.5]) - 0.5
    return cv2.warpAffine(picture, indices, (width, height), flags=cv2.INTER_LINEAR | cv2.WARP_INVERSE_MAP,
                          borderMode=border)


def orientation(joints):
    """Above 0 for a right palm or a left back as the camera sees them; about 0 edge-on."""
    up = joints[..., MIDDLE_MCP, :] - joints[..., WRIST, :]
    across = joints[..., INDEX_MCP, :] - joints[..., LITTLE_MCP, :]
    cross = up[..., 0] * across[..., 1] - up[..., 1] * across[..., 0]
    return cross / ((up ** 2).sum(-1) + 1e-6)


def hand_size(joints):
    """Wrist to middle MCP, but not less than a share of the whole hand (foreshortened palms)."""
    length = np.hypot(*(joints[MIDDLE_MCP] - joints[WRIST]))
    return max(float(length), 0.28 * float((joints.max(0) - joints.min(0)).max()))


def reported(joints):
    """The joints in the reported convention, from the plain one; (..., 21, 2)."""
    moved = joints.copy()
    way = joints[..., MIDDLE_MCP, :] - joints[..., WRIST, :]
    moved[..., WRIST, :] += WRIST_SHIFT * way
    moved[..., MIDDLE_MCP, :] -= MCP_SHIFT * way
    return moved
