"""Measures of isolation.toml that are more than an expression."""


def dip_at_the_edge(run, parameters):
    """How far the isolation's upper side lies below the silicon's at its lowest place, in nm; 0 where
    it stands higher everywhere."""
    top = run.layers["STI"].top
    thick = run.layers["STI"].thickness > 0
    silicon = run.layers["Silicon"].top[:, run.x > 1.5].max()
    return max(0.0, 1000.0 * float(silicon - top[thick].min()))
