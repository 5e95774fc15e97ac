#!/bin/sh
# Starts the analysis: statisticspython3.sh SCRIPT PAYLOAD
# exec keeps the analysis in this process, so that ending it leaves nothing behind.
exec "$(dirname "$0")/genostat-analysis" "$@"
