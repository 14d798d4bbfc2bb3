"""The two networks: landmarks in an upright crop, and hands in a whole picture.

Both take pixels 0..255 in BGR order and give decoded values, so that a program needs
nothing but array look-ups behind them. `README.md` describes inputs and outputs.
"""
import torch
import torch.nn as nn
import torch.nn.functional as F

JOINTS = 21
CROP_SIZE = 128
CROP_GRID = CROP_SIZE // 4
FINDER_WIDTH, FINDER_HEIGHT, FINDER_STRIDE = 192, 144, 8


def conv(inputs, outputs, size=3, stride=1, activate=True):
    layers = [nn.Conv2d(inputs, outputs, size, stride, size // 2, bias=False), nn.BatchNorm2d(outputs)]
    if activate:
        layers.append(nn.ReLU(inplace=True))
    return nn.Sequential(*layers)


class Residual(nn.Module):
    def __init__(self, channels):
        super().__init__()
        self.first = conv(channels, channels)
        self.second = conv(channels, channels, activate=False)

    def forward(self, x):
        return F.relu(x + self.second(self.first(x)))


def stage(inputs, outputs, blocks):
    return nn.Sequential(conv(inputs, outputs, stride=2), *[Residual(outputs) for _ in range(blocks)])


def normalise(pixels):
    """0..255 to -1..1."""
    return pixels * (1 / 127.5) - 1


class Merge(nn.Module):
    """Brings a coarse feature map to the size of a finer one and mixes the two."""

    def __init__(self, fine, width):
        super().__init__()
        self.lateral = conv(fine, width, 1, activate=False)
        self.mix = conv(width, width)

    def forward(self, coarse, fine):
        return self.mix(F.relu(F.interpolate(coarse, scale_factor=2, mode="nearest") + self.lateral(fine)))


class LandmarkNet(nn.Module):
    """Crop to heat maps, and to logits: presence, right hand, palm towards the camera, joint confidences.

    The confidence logit of a joint is a linear function of how widely its heat is scattered
    plus a term from the whole crop; it does not push the heat maps (their gradient is cut).
    """

    CHANNELS = (32, 32, 64, 96, 128)
    BLOCKS = (1, 1, 2, 1)
    WIDTH = 48

    def __init__(self):
        super().__init__()
        c, b, width = self.CHANNELS, self.BLOCKS, self.WIDTH
        self.stem = conv(3, c[0], stride=2)
        self.stages = nn.ModuleList(stage(c[i], c[i + 1], b[i]) for i in range(4))
        self.top = conv(c[4], width, 1, activate=False)
        self.merges = nn.ModuleList(Merge(c[i], width) for i in (3, 2, 1))
        self.heat = nn.Conv2d(width, JOINTS, 1)
        self.whole = nn.Sequential(nn.Linear(c[4], 96), nn.ReLU(inplace=True), nn.Linear(96, 3 + JOINTS))
        self.scatter_weight = nn.Parameter(torch.full((JOINTS,), -1.0))
        self.scatter_bias = nn.Parameter(torch.full((JOINTS,), -4.0))
        # Set by calibrate.py: confidence logit = gain * raw + offset, per joint.
        self.register_buffer("confidence_gain", torch.ones(JOINTS))
        self.register_buffer("confidence_offset", torch.zeros(JOINTS))
        self.register_buffer("moments", self._moments(), persistent=False)

    @staticmethod
    def _moments():
        """Columns x, y, x^2, y^2 of each heat cell's centre, crop units."""
        centre = (torch.arange(CROP_GRID) + 0.5) / CROP_GRID
        y, x = torch.meshgrid(centre, centre, indexing="ij")
        return torch.stack([x, y, x * x, y * y], -1).reshape(-1, 4)

    def features(self, pixels):
        """Heat maps (B, 21, h, w) before the softmax and the deepest features, averaged."""
        maps = []
        x = self.stem(normalise(pixels))
        for part in self.stages:
            x = part(x)
            maps.append(x)
        merged = self.top(maps[3])
        for merge, fine in zip(self.merges, (maps[2], maps[1], maps[0])):
            merged = merge(merged, fine)
        pooled = F.avg_pool2d(maps[3], (maps[3].shape[2], maps[3].shape[3])).flatten(1)
        return self.heat(merged), pooled

    def confidence_logits(self, joint_moments, whole):
        """Raw logits from the heat's moments (B, 21, 4) and the whole crop's part (B, 21)."""
        m = joint_moments.detach()
        variance = m[..., 2] + m[..., 3] - m[..., 0] * m[..., 0] - m[..., 1] * m[..., 1]
        return self.scatter_weight * torch.log(F.relu(variance) + 1e-4) + self.scatter_bias + whole

    def forward(self, pixels):
        """landmarks (B, 21, 3): x, y, confidence; hand (B, 2): presence, right; probabilities."""
        heat, pooled = self.features(pixels)
        probability = torch.softmax(heat.reshape(-1, JOINTS, CROP_GRID * CROP_GRID), 2)
        joint_moments = torch.matmul(probability, self.moments)
        whole = self.whole(pooled)
        logits = self.confidence_logits(joint_moments, whole[:, 3:])
        confidence = torch.sigmoid(logits * self.confidence_gain + self.confidence_offset)
        landmarks = torch.cat([joint_moments[..., :2], confidence.unsqueeze(2)], 2)
        return landmarks, torch.sigmoid(whole[:, :2])


class FinderNet(nn.Module):
    """Whole picture to a grid of hand candidates."""

    CHANNELS = (24, 32, 48, 80, 112)
    BLOCKS = (0, 1, 1, 1)
    WIDTH = 48

    def __init__(self):
        super().__init__()
        c, b, width = self.CHANNELS, self.BLOCKS, self.WIDTH
        self.stem = conv(3, c[0], stride=2)
        self.stages = nn.ModuleList(stage(c[i], c[i + 1], b[i]) for i in range(4))
        self.top = conv(c[4], width, 1, activate=False)
        self.lateral3 = conv(c[3], width, 1, activate=False)
        self.mix3 = conv(width, width)
        self.lateral2 = conv(c[2], width, 1, activate=False)
        self.mix2 = conv(width, width)
        self.out = nn.Conv2d(width, 7, 1)
        nn.init.zeros_(self.out.bias)
        self.out.bias.data[0] = -4
        rows, columns = FINDER_HEIGHT // FINDER_STRIDE, FINDER_WIDTH // FINDER_STRIDE
        y, x = torch.meshgrid(torch.arange(rows) + 0.5, torch.arange(columns) + 0.5, indexing="ij")
        self.register_buffer("cell_centres", torch.stack([x, y])[None] * FINDER_STRIDE, persistent=False)

    def raw(self, pixels):
        """Score logit, centre offset (2, in cells), log(size / width), cos, sin, right logit."""
        maps = []
        x = self.stem(normalise(pixels))
        for part in self.stages:
            x = part(x)
            maps.append(x)
        double = lambda z, like: F.interpolate(z, size=(like.shape[2], like.shape[3]), mode="nearest")
        merged = self.mix3(F.relu(double(self.top(maps[3]), maps[2]) + self.lateral3(maps[2])))
        merged = self.mix2(F.relu(double(merged, maps[1]) + self.lateral2(maps[1])))
        return self.out(merged)

    def forward(self, pixels):
        """hands (B, 7, 18, 24): score, centre x, y, size (input pixels), cos, sin, right."""
        raw = self.raw(pixels)
        centre = raw[:, 1:3] * FINDER_STRIDE + self.cell_centres
        return torch.cat([torch.sigmoid(raw[:, 0:1]), centre, torch.exp(raw[:, 3:4]) * FINDER_WIDTH,
                          raw[:, 4:6], torch.sigmoid(raw[:, 6:7])], 1)
