// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZDesktopNotice.h"

#include "zlib/linux/documents/ZDesktopProgram.h"

namespace orvane
{

namespace
{

// $1 is the title, $2 the text. The shell starts the dialog in the background and ends at once, so
// that the dialog is no child of this process, which would have to wait for its end.
constexpr const char* kScript = R"(
test -n "$DISPLAY$WAYLAND_DISPLAY" || exit 0
is_there() { command -v "$1" > /dev/null; }
case "$XDG_CURRENT_DESKTOP" in
*KDE*) is_there kdialog && { kdialog --title "$1" --error "$2" & exit 0; } ;;
esac
if is_there zenity; then
  zenity --error --no-markup --title="$1" --text="$2" &
elif is_there kdialog; then
  kdialog --title "$1" --error "$2" &
elif is_there xmessage; then
  xmessage -center -title "$1" "$2" &
fi
)";

}  // namespace

void showDesktopNotice(const std::string& title, const std::string& text)
{
    const ZDesktopProgram shell({"/bin/sh", "-c", kScript, "sh", title, text});
}

}  // namespace orvane
