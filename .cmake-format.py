# Settings of cmake-lint. Variables have lower-case names, except those that CMake and its modules define.
with section("format"):
    line_width = 120
    tab_size = 2

with section("lint"):
    # C0113: commands that run during the build need no COMMENT.
    disabled_codes = ["C0113"]
    local_var_pattern = "[A-Za-z]\\w*"
    public_var_pattern = "[A-Za-z]\\w*"
    internal_var_pattern = "[A-Za-z]\\w*"
