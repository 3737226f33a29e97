// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"
#include "zlib/common/views/ZWindow.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZApp;
class ZModalRun;
class ZView;

/// A modal window with a description of its own: an XML resource that is checked as the
/// application's is and whose `windowtype` gives the window. [interface thread]
class ZDialog : private ZWindowFilter
{
public:
    /// Builds the window. Throws ZException -1 when there is no such resource, no declaration, no
    /// window in it, and 5 for a bad signature; what the window's constructor throws goes through.
    ZDialog(ZApp& app, const ZString& resourceName);
    ~ZDialog() override;

    [[nodiscard]] ZWindow& GetWindow() const { return *mWindow; }
    /// The view of that name and class; null when there is none.
    template <typename View>
    [[nodiscard]] boost::shared_ptr<View> Find(std::string_view name) const
    {
        return boost::dynamic_pointer_cast<View>(FindView(name));
    }

    /// The view that gets the keys when no other has them, from now on; one of the dialog's. The
    /// Tab key moves them on.
    void SetKeyView(ZView& view);

    /// Shows the window above parent, which may be null, and waits, with the interface lock given
    /// up, until End. False when that said so, when the user closed the window, by Escape too, or
    /// the application did, and at once where there is no display or this is another thread. The
    /// application is there at the return, but all else may be gone.
    [[nodiscard]] bool Run(ZWindow* parent);
    /// For the dialog's own views: ends Run, which gives back the result.
    void End(bool result);

private:
    [[nodiscard]] boost::shared_ptr<ZView> FindView(std::string_view name) const;
    void FilterMessage(const ZMessage& message) override;
    void KeepKeyView();
    void Centre(ZWindow* parent);

    ZApp& mApp;
    boost::shared_ptr<ZWindow> mWindow;
    ZView* mKeyView = nullptr;
    ZModalRun* mRun = nullptr;
    bool mResult = false;
};

}  // namespace orvane
