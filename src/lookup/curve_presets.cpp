// curve_presets
