"""Teaches a trained landmark network how sure to be of each joint.

What it sees stays as it is: only what makes confidences of it is trained further, on crops of the
training people, most of which have things or other hands before them, and on crops without a hand,
where every joint is wrong.
"""
import math
from dataclasses import dataclass, fields

import torch
import torch.nn.functional as F

import landmark_loss
from networks import CROP_SIZE, LandmarkNet, pixels_of

BATCH, RATE = 64, 2e-3


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
        heat, sight, pooled = net.features(pixels_of(crops[start:start + 64]))
        log, moments = landmark_loss.decode(heat)
        evidence = net.evidence(log.exp().flatten(2), moments, sight)
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


def learn(net: LandmarkNet, batches, pictures, report):
    """Trains the confidences of `net`, in place; `report`(pictures, loss) now and then."""
    net.eval()
    net.sight.train()
    # Of the last layer only the confidences' rows have a gradient.
    numbers = [*net.sight.parameters(), net.sight_weight, net.scatter_weight, net.scatter_bias,
               net.whole[2].weight, net.whole[2].bias]
    optimiser = torch.optim.Adam(numbers, RATE)
    steps, mean = pictures // BATCH, 0.0
    for step in range(steps):
        batch = batches.batch(BATCH, CROP_SIZE) if step % 2 == 0 else batches.mirrored(batch)
        for group in optimiser.param_groups:
            group["lr"] = RATE * 0.5 * (1 + math.cos(math.pi * step / steps))
        loss = loss_on(net, batch)
        optimiser.zero_grad()
        loss.backward()
        optimiser.step()
        mean += (float(loss) - mean) / min(step + 1, 200)
        if (step + 1) % 200 == 0:
            report((step + 1) * BATCH, mean)
    net.eval()


def loss_on(net: LandmarkNet, batch):
    crops, joints, visible, _, _, presence = batch
    with torch.no_grad(), torch.autocast("cpu", dtype=torch.bfloat16):
        heat, finest, merged, pooled = net.look(pixels_of(crops))
    log, moments = landmark_loss.decode(heat)
    sight = net.sight(finest.float(), merged.float())
    evidence = net.evidence(log.exp().flatten(2), moments, sight)
    logits = net.confidence_logits(*evidence, net.whole(pooled.float())[:, 3:])
    good = correct(moments[..., :2], joints, visible * presence[:, None])
    return F.binary_cross_entropy_with_logits(logits, good)
