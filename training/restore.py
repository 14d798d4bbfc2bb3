"""Takes a trained network back out of its ONNX file.

The exporter folds each batch normalisation into the convolution before it. The normalisations get
what leaves their input as it is, and the convolution's bias: the network computes what the file
does, and can be calibrated, evaluated and exported again. For a training to go on, the statistics
that were lost are measured anew.
"""
import numpy as np
import onnx
import onnx.numpy_helper
import torch
import torch.nn as nn


def _normalised_layers(net, example):
    """Pairs of convolution and batch normalisation in the order in which the network uses them."""
    order, hooks = [], []
    for module in net.modules():
        if isinstance(module, nn.Sequential) and len(module) > 1 and isinstance(module[1], nn.BatchNorm2d):
            hooks.append(module.register_forward_hook(lambda layer, *_: order.append((layer[0], layer[1]))))
    net(example)
    for hook in hooks:
        hook.remove()
    return order


@torch.no_grad()
def from_onnx(net, path, example):
    """Fills `net`, in place, from the file. `example`: a picture for it. What the file does not hold,
    because the network had no such part yet, keeps its first values."""
    net.eval()
    graph = onnx.load(path).graph
    tensors = {tensor.name: torch.from_numpy(np.array(onnx.numpy_helper.to_array(tensor)))
               for tensor in graph.initializer}
    state = net.state_dict()
    for name in set(state) & set(tensors):
        state[name].copy_(tensors[name])
    layers = _normalised_layers(net, example)
    folded = [node.input for node in graph.node if node.op_type == "Conv" and node.input[1] not in state]
    if len(folded) != len(layers):
        raise SystemExit(f"{path} has {len(folded)} normalised layers instead of {len(layers)}")
    for (conv, norm), (_, weight, bias) in zip(layers, folded):
        conv.weight.copy_(tensors[weight])
        norm.bias.copy_(tensors[bias])
        norm.running_var.fill_(1 - norm.eps)


@torch.no_grad()
def measure_statistics(net, pictures):
    """Gives the normalisations, in place, the mean and variance of what they see in `pictures`. What the
    network computes stays the same; but now it can be trained on."""
    net.eval()
    seen, hooks = {}, []

    def watch(norm, inputs):
        values = inputs[0].transpose(0, 1).flatten(1)
        seen[norm] = values.mean(1), values.var(1, unbiased=False)

    for module in net.modules():
        if isinstance(module, nn.BatchNorm2d):
            hooks.append(module.register_forward_pre_hook(watch))
    net(pictures)
    for hook in hooks:
        hook.remove()
    for norm, (mean, variance) in seen.items():
        scale = norm.weight / torch.sqrt(norm.running_var + norm.eps)
        norm.bias.add_((mean - norm.running_mean) * scale)
        norm.weight.copy_(scale * torch.sqrt(variance + norm.eps))
        norm.running_mean.copy_(mean)
        norm.running_var.copy_(variance)
