# SPDX-License-Identifier: GPL-3.0-or-later
# Read by the other scripts: how they answer --help and a wrong call.

# Prints the comment at the head of the script that calls it, and ends the script.
print_help() {
  sed -n '3,/^set/{/^#/s/^# \{0,1\}//p}' "$0"
  exit 0
}

# Ends the script with a line that says what is wrong and what would be right.
fail() {
  echo "scripts/$(basename -- "$0"): $1" >&2
  exit 2
}

# For scripts that take no arguments but --help.
take_no_arguments() {
  case ${1:-} in
    "") ;;
    -h | --help) print_help ;;
    *) fail "takes no arguments, and '$1' is one; --help tells what the script does" ;;
  esac
}
