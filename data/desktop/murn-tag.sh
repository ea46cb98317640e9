#!/bin/sh
# Tag with Murn: an action of the file manager, which names the chosen files as arguments.
exec murn --tag -- "$@"
