#!/bin/sh
# SPDX-License-Identifier: MIT
# Names of functions become links, which they are not in Markdown's quotes.
exec sed -E -e 's/`((Ovra|OVRA_MODEL_)[A-Za-z0-9_]+)`/[\1](@ref \1)/g' -e 's,python/README\.md\),python-package.md),' "$1"
