// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZFileChooser.h"

#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZNeverDestroyed.h"

#include <utility>

namespace orvane
{

namespace
{

ZFileChooser::Presenter& replacement()
{
    static const ZNeverDestroyed<ZFileChooser::Presenter> presenter;
    return *presenter;
}

/// True while the desktop's chooser is open, for the one thread that opens it.
class OnlyOne
{
public:
    OnlyOne()
        : mIsFirst(!std::exchange(isOpen, true))
    {
    }
    OnlyOne(const OnlyOne&) = delete;
    OnlyOne& operator=(const OnlyOne&) = delete;
    ~OnlyOne()
    {
        if (mIsFirst)
            isOpen = false;
    }
    [[nodiscard]] bool IsFirst() const { return mIsFirst; }

private:
    static inline bool isOpen = false;
    const bool mIsFirst;
};

}  // namespace

std::optional<std::string> ZFileChooser::Choose(const ZFileRequest& request)
{
    if (replacement())
        return replacement()(request);
    if (!ZInterfaceThread::IsCurrent())
        return std::nullopt;
    const OnlyOne chooser;
    if (chooser.IsFirst())
        return AskDesktop(request);
    // Inside the first one the second would have to end before it.
    ZMessageBox::Show(ZMessageBox::kNotice, request.title, "Another file dialog is open.");
    return std::nullopt;
}

ZFileChooser::Presenter ZFileChooser::SetPresenter(Presenter presenter)
{
    return std::exchange(replacement(), std::move(presenter));
}

std::string ZFileChooser::FilterName(const ZFiletype& type)
{
    return type.description.ToNarrow() + " (" + FilterPattern(type) + ")";
}

std::string ZFileChooser::FilterPattern(const ZFiletype& type)
{
    return "*." + type.extension;
}

}  // namespace orvane
