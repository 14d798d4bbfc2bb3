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


def pixels_of(pictures, device="cpu"):
    """An array (n, height, width, 3) of bytes as a network takes it."""
    pixels = torch.from_numpy(pictures).to(device).permute(0, 3, 1, 2).float()
    return pixels.contiguous(memory_format=torch.channels_last)


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
        size = (fine.shape[2], fine.shape[3])
        return self.mix(F.relu(F.interpolate(coarse, size=size, mode="nearest") + self.lateral(fine)))


class Pyramid(nn.Module):
    """What both networks see with: features of a picture, coarser and coarser, and mixed again
    from the coarsest up to the resolution at which the answer is given."""

    WIDTH = 48

    def __init__(self, channels, blocks, merges):
        super().__init__()
        self.stem = conv(3, channels[0], stride=2)
        self.stages = nn.ModuleList(stage(channels[i], channels[i + 1], blocks[i]) for i in range(len(blocks)))
        self.top = conv(channels[-1], self.WIDTH, 1, activate=False)
        self.merges = nn.ModuleList(Merge(fine, self.WIDTH) for fine in channels[-2:-2 - merges:-1])

    def forward(self, pixels):
        """The mixed features, and those of every stage, finest first."""
        maps = [self.stem(normalise(pixels))]
        for part in self.stages:
            maps.append(part(maps[-1]))
        merged = self.top(maps[-1])
        for merge, fine in zip(self.merges, maps[-2::-1]):
            merged = merge(merged, fine)
        return merged, maps[1:]


class Sight(nn.Module):
    """Features that tell what is to be seen at a place. The mixed features know where the hand must be;
    the finest stage knows better whether there is skin or something before it."""

    WIDTH = 32

    def __init__(self, fine, mixed):
        super().__init__()
        self.fine = conv(fine, 24, 1, activate=False)
        self.mixed = conv(mixed, 24, 1, activate=False)
        self.mix = conv(24, self.WIDTH)

    def forward(self, fine, mixed):
        return self.mix(F.relu(self.fine(fine) + self.mixed(mixed)))


class LandmarkNet(nn.Module):
    """Crop to heat maps, and to logits: presence, right hand, palm towards the camera, joint confidences.

    The confidence logit of a joint is a sum of three: a linear function of how widely its heat is
    scattered, a linear function of what is to be seen where it lies, and a term from the whole crop. It does
    not push the heat maps (their gradient is cut).
    """

    CHANNELS = (32, 32, 64, 96, 128)
    BLOCKS = (1, 1, 2, 1)

    def __init__(self):
        super().__init__()
        self.pyramid = Pyramid(self.CHANNELS, self.BLOCKS, merges=3)
        self.heat = nn.Conv2d(Pyramid.WIDTH, JOINTS, 1)
        self.whole = nn.Sequential(nn.Linear(self.CHANNELS[-1], 96), nn.ReLU(inplace=True), nn.Linear(96, 3 + JOINTS))
        self.scatter_weight = nn.Parameter(torch.full((JOINTS,), -1.0))
        self.scatter_bias = nn.Parameter(torch.full((JOINTS,), -4.0))
        self.sight = Sight(self.CHANNELS[1], Pyramid.WIDTH)
        self.sight_weight = nn.Parameter(torch.zeros(JOINTS, Sight.WIDTH))
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

    def look(self, pixels):
        """Heat maps (B, 21, h, w) before the softmax, the finest features and the mixed ones, and the
        coarsest, averaged."""
        merged, stages = self.pyramid(pixels)
        coarsest = stages[-1]
        pooled = F.avg_pool2d(coarsest, (coarsest.shape[2], coarsest.shape[3])).flatten(1)
        return self.heat(merged), stages[0], merged, pooled

    def features(self, pixels):
        """Heat maps, what is to be seen at their places, and the coarsest features, averaged."""
        heat, finest, merged, pooled = self.look(pixels)
        return heat, self.sight(finest, merged), pooled

    def evidence(self, probability, joint_moments, sight):
        """What tells how surely a joint is where its heat lies (B, 21, cells): the logarithm of the
        heat's variance (B, 21), and what is to be seen there (B, 21, width)."""
        m = joint_moments.detach()
        variance = m[..., 2] + m[..., 3] - m[..., 0] * m[..., 0] - m[..., 1] * m[..., 1]
        return torch.log(F.relu(variance) + 1e-4), torch.matmul(probability.detach(), sight.flatten(2).transpose(1, 2))

    def confidence_logits(self, scatter, seen, whole):
        """Raw logits from the evidence and the whole crop's part (B, 21)."""
        return self.scatter_weight * scatter + self.scatter_bias + (seen * self.sight_weight).sum(2) + whole

    def forward(self, pixels):
        """landmarks (B, 21, 3): x, y, confidence; hand (B, 2): presence, right; probabilities."""
        heat, sight, pooled = self.features(pixels)
        probability = torch.softmax(heat.reshape(-1, JOINTS, CROP_GRID * CROP_GRID), 2)
        joint_moments = torch.matmul(probability, self.moments)
        whole = self.whole(pooled)
        logits = self.confidence_logits(*self.evidence(probability, joint_moments, sight), whole[:, 3:])
        confidence = torch.sigmoid(logits * self.confidence_gain + self.confidence_offset)
        landmarks = torch.cat([joint_moments[..., :2], confidence.unsqueeze(2)], 2)
        return landmarks, torch.sigmoid(whole[:, :2])


class FinderNet(nn.Module):
    """Whole picture to a grid of hand candidates."""

    CHANNELS = (24, 32, 48, 80, 112)
    BLOCKS = (0, 1, 1, 1)

    def __init__(self):
        super().__init__()
        self.pyramid = Pyramid(self.CHANNELS, self.BLOCKS, merges=2)
        self.out = nn.Conv2d(Pyramid.WIDTH, 7, 1)
        nn.init.zeros_(self.out.bias)
        self.out.bias.data[0] = -4
        rows, columns = FINDER_HEIGHT // FINDER_STRIDE, FINDER_WIDTH // FINDER_STRIDE
        y, x = torch.meshgrid(torch.arange(rows) + 0.5, torch.arange(columns) + 0.5, indexing="ij")
        self.register_buffer("cell_centres", torch.stack([x, y])[None] * FINDER_STRIDE, persistent=False)

    def raw(self, pixels):
        """Score logit, centre offset (2, in cells), log(size / width), cos, sin, right logit."""
        return self.out(self.pyramid(pixels)[0])

    def forward(self, pixels):
        """hands (B, 7, 18, 24): score, centre x, y, size (input pixels), cos, sin, right."""
        raw = self.raw(pixels)
        centre = raw[:, 1:3] * FINDER_STRIDE + self.cell_centres
        return torch.cat([torch.sigmoid(raw[:, 0:1]), centre, torch.exp(raw[:, 3:4]) * FINDER_WIDTH,
                          raw[:, 4:6], torch.sigmoid(raw[:, 6:7])], 1)
