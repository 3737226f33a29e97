// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZString.h"
#include "zlib/common/views/ZWindow.h"
#include "zlib/common/views/ZWindowFilter.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <string_view>

namespace orvane
{

class ZApp;
class ZModalRun;
class ZView;

/// A modal window that an XML resource of its own describes, which is checked like the
/// application's description. [interface thread]
class ZDialog : private ZWindowFilter
{
public:
    /// Builds the window from the resource's `windowtype`. Throws ZException kGeneral without such
    /// a resource, declaration or window, 5 for a bad signature, and what the window's constructor
    /// throws.
    ZDialog(ZApp& app, const ZString& resourceName);
    ~ZDialog() override;

    [[nodiscard]] ZWindow& GetWindow() const { return *mWindow; }
    /// Returns the view of that name and class; null when there is none.
    template <typename View>
    [[nodiscard]] boost::shared_ptr<View> Find(std::string_view name) const
    {
        return boost::dynamic_pointer_cast<View>(FindView(name));
    }

    /// Gives the focus to one of the dialog's views, now and whenever a click has left it to none.
    void SetKeyView(ZView& view);

    /// Shows the window above parent, which may be null, and waits for End with the interface lock
    /// given up. Returns the result of End; false when the user closed the window, also by Escape,
    /// when the application ended the run, and at once without a display or on another thread. At
    /// the return the application still exists, but anything else may have been destroyed.
    [[nodiscard]] bool Run(ZWindow* parent);
    /// Called by the dialog's own views: ends Run with this result.
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
