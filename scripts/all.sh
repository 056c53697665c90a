# Everything that the commands of this house share; each sources this first.
# shellcheck shell=bash
for part in house processes packages build prefix display picture; do
  . "$(dirname "${BASH_SOURCE[0]}")/$part.sh"
done
