// gradient_planes
