// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZFileChooser.h"

#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/common/objects/ZNeverDestroyed.h"

#include <cassert>
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

/// Marks the desktop's dialog as open for a scope. [interface thread]
class OpenDialogScope
{
public:
    OpenDialogScope()
        : mIsFirst(!std::exchange(isOpen, true))
    {
    }
    OpenDialogScope(const OpenDialogScope&) = delete;
    OpenDialogScope& operator=(const OpenDialogScope&) = delete;
    ~OpenDialogScope()
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
    assert(request.owner);  // else nobody could end the dialog with its application
    if (replacement())
        return replacement()(request);
    if (!ZInterfaceThread::IsCurrent())
        return std::nullopt;
    const OpenDialogScope dialog;
    if (dialog.IsFirst())
        return AskDesktop(request);
    // Modal runs nest: the first dialog could not return before the second.
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
