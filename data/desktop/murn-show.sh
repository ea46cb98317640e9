#!/bin/sh
# Show in Murn: an action of the file manager, which names the chosen files as arguments.
exec murn --show -- "$@"
