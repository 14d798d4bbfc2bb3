"""Teaches a trained landmark network how sure to be of each joint.

What it sees stays as it is: only the few numbers are fitted from which it makes confidences, on crops
of the training people with things and other hands before them, and on crops without a hand, where
every joint is wrong. A small share of a training's pictures is enough for so few numbers.
"""
from dataclasses import dataclass, fields

import torch
import torch.nn.functional as F

import landmark_loss
from networks import LandmarkNet

STEPS, RATE = 400, 0.01
PULL = 1e-3  # How strongly the numbers are held to where they begin.


@dataclass
class Observed:
    """What the network sees in many crops, as far as it bears on the confidences."""

    points: torch.Tensor  # (n, 21, 2), crop units.
    scatter: torch.Tensor
    seen: torch.Tensor
    pooled: torch.Tensor

    def logits(self, net):
        return net.confidence_logits(self.scatter, self.seen, net.whole(self.pooled)[:, 3:])


@torch.no_grad()
def observe(net: LandmarkNet, crops):
    parts = []
    for start in range(0, len(crops), 64):
        pixels = torch.from_numpy(crops[start:start + 64]).permute(0, 3, 1, 2).float()
        heat, merged, pooled = net.features(pixels.contiguous(memory_format=torch.channels_last))
        log, moments = landmark_loss.decode(heat)
        evidence = net.evidence(log.exp().flatten(2), moments, merged)
        parts.append(Observed(moments[..., :2], *evidence, pooled))
    return joined(parts)


def joined(parts):
    return Observed(*(torch.cat([getattr(part, field.name) for part in parts]) for field in fields(Observed)))


def correct(points, joints, seen):
    """1 where a joint is to be seen in the crop and was placed close to where it is; else 0."""
    joints = torch.from_numpy(joints).float()
    error = (points - joints).norm(dim=-1) / landmark_loss.sizes(joints)[:, None]
    inside = ((joints > 0) & (joints < 1)).all(-1)
    return ((error < landmark_loss.CONFIDENT_WITHIN) & inside & (torch.from_numpy(seen) > 0)).float()


def learn(net: LandmarkNet, observed, good):
    """Fits the confidences of `net`, in place."""
    numbers = [net.scatter_weight, net.scatter_bias, net.sight_weight, net.whole[2].weight, net.whole[2].bias]
    first = [number.detach().clone() for number in numbers]
    optimiser = torch.optim.Adam(numbers, RATE)
    for step in range(STEPS):
        for group in optimiser.param_groups:
            group["lr"] = RATE * (1 - step / STEPS)
        optimiser.zero_grad()
        loss = F.binary_cross_entropy_with_logits(observed.logits(net), good)
        loss = loss + PULL * sum(((number - begin) ** 2).sum() for number, begin in zip(numbers, first)) / good.shape[1]
        loss.backward()
        optimiser.step()
