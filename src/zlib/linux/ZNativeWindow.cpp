#include "zlib/common/ZNativeWindow.h"

namespace orvane
{

struct ZNativeWindow::Native
{
};

ZNativeWindow::ZNativeWindow(std::unique_ptr<Native> native)
    : mNative(std::move(native))
{
}

ZNativeWindow::~ZNativeWindow() = default;

}  // namespace orvane
