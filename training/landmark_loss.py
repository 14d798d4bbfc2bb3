"""What the landmark network is asked to get right."""
import torch
import torch.nn.functional as F

import geometry

JOINT_WEIGHTS = torch.ones(21)
JOINT_WEIGHTS[geometry.SEVEN] = 1.6
TARGET_WIDTH = 1.1 / 32  # Standard deviation of the heat asked for, in crop sides.
CONFIDENT_WITHIN = 0.25  # Hand sizes.
# The gesture rules' ratios of the gap between thumb and index tip to the reported hand size: below
# the first a pinch begins, above the second it ends.
PINCHED, RELEASED = 0.3, 0.5
RATIO_WIDTH = 0.05  # How sharply a ratio between the two is called one or the other.
NEAR_RATIO = 0.9    # Of hands with a smaller ratio the gap counts in full.


def decode(heat):
    """Log-probabilities (B, J, h, w) and moments x, y, x^2, y^2 (B, J, 4) of heat maps of any size."""
    count, joints, height, width = heat.shape
    log = F.log_softmax(heat.float().flatten(2), -1)
    x = (torch.arange(width, device=heat.device) + 0.5) / width
    y = (torch.arange(height, device=heat.device) + 0.5) / height
    y, x = torch.meshgrid(y, x, indexing="ij")
    moments = log.exp() @ torch.stack([x, y, x * x, y * y], -1).reshape(-1, 4)
    return log.reshape(count, joints, height, width), moments


def wanted_heat(joints, size):
    """Normalised Gaussians, rows and columns apart."""
    centre = (torch.arange(size, device=joints.device) + 0.5) / size
    heat = torch.exp(-(centre - joints[..., None]) ** 2 / (2 * TARGET_WIDTH ** 2)) + 1e-12
    heat = heat / heat.sum(-1, keepdim=True)
    return heat[..., 1, :], heat[..., 0, :]


def sizes(joints):
    """As geometry.hand_size, for a batch."""
    length = (joints[:, geometry.MIDDLE_MCP] - joints[:, geometry.WRIST]).norm(dim=-1)
    box = (joints.amax(1) - joints.amin(1)).amax(-1)
    return torch.maximum(length, 0.28 * box) + 1e-3


def gap_parts(points, joints, weight):
    """Where the tips of thumb and index finger lie from each other: the way, and what the gesture rules
    make of it. Errors that both tips share do not matter here, errors that part them do."""
    gap = lambda p: p[:, geometry.THUMB_TIP] - p[:, geometry.INDEX_TIP]
    ours, theirs = gap(points), gap(joints)
    palm = (joints[:, geometry.MIDDLE_MCP] - joints[:, geometry.WRIST]).norm(dim=-1)
    size = (palm * geometry.REPORTED_PALM).clamp(min=0.04)
    ratio, wanted = (ours.square().sum(-1) + 1e-8).sqrt() / size, theirs.norm(dim=-1) / size
    near = 0.25 + 0.75 * (wanted < NEAR_RATIO).float()
    logit = (0.5 * (PINCHED + RELEASED) - ratio.clamp(max=1)) / RATIO_WIDTH
    clear = ((wanted < PINCHED) | (wanted > RELEASED)).float()
    pinch = F.binary_cross_entropy_with_logits(logit, (wanted < PINCHED).float(), reduction="none")
    return masked((ours - theirs).abs().sum(-1) * 32, weight * near), masked(pinch, weight * clear)


def masked(loss, weight):
    return (loss * weight).sum() / (weight.sum() + 1e-6)


def landmark_loss(net, heat, sight, pooled, joints, visible, right, weight, presence):
    """The sum to minimise, and its parts for the log."""
    log, moments = decode(heat)
    whole = net.whole(pooled.float())
    inside = ((joints > -0.02) & (joints < 1.02)).all(-1).float() * presence[:, None]
    joint_weight = inside * JOINT_WEIGHTS.to(heat.device) * weight[:, None] * (0.4 + 0.6 * visible)
    rows, columns = wanted_heat(joints, heat.shape[-1])
    cross = -((log * columns[..., None, :]).sum(-1) * rows).sum(-1)
    distance = (moments[..., :2] - joints.clamp(0, 1)).abs().sum(-1) * 32
    parts = {"heat": masked(cross, joint_weight), "distance": masked(distance, joint_weight)}
    tips_weight = joint_weight[:, [geometry.THUMB_TIP, geometry.INDEX_TIP]].amin(-1)
    parts["gap"], parts["pinch"] = gap_parts(moments[..., :2], joints, tips_weight)

    parts["presence"] = F.binary_cross_entropy_with_logits(whole[:, 0], presence)
    known = presence * torch.isfinite(right).float()
    target = torch.nan_to_num(right)
    parts["right"] = masked(F.binary_cross_entropy_with_logits(whole[:, 1], target, reduction="none"), known)
    # Left or right is an exclusive-or of the palm's side and the orientation: learn the palm too.
    turn = geometry.orientation(joints)
    palm = ((target > 0.5) == (turn > 0)).float()
    clear = known * ((turn.abs() - 0.06).clamp(0, 0.2) / 0.2)
    parts["palm"] = masked(F.binary_cross_entropy_with_logits(whole[:, 2], palm, reduction="none"), clear)

    error = (moments[..., :2].detach() - joints).norm(dim=-1) / sizes(joints)[:, None]
    good = ((error < CONFIDENT_WITHIN).float() * (visible > 0) * inside)
    evidence = net.evidence(log.exp().flatten(2), moments, sight.float())
    confidence = net.confidence_logits(*evidence, whole[:, 3:])
    parts["confidence"] = masked(F.binary_cross_entropy_with_logits(confidence, good, reduction="none"),
                                 presence[:, None].expand_as(good))
    total = (0.5 * parts["heat"] + parts["distance"] + parts["presence"] + 0.5 * parts["right"]
             + 0.8 * parts["palm"] + 2 * parts["confidence"] + 0.5 * parts["gap"] + 0.3 * parts["pinch"])
    return total, parts
