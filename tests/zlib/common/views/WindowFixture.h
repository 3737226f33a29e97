// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Test.h"
#include "zlib/common/documents/DocumentFixture.h"
#include "zlib/common/objects/ZClassRegistry.h"
#include "zlib/common/views/TestView.h"
#include "zlib/common/views/ZWindow.h"

namespace orvane
{

inline std::string testView(const std::string& name, const std::string& bounds)
{
    return "<view name=\"" + name + "\" class=\"TestViewClass\"><rect name=\"bounds\" " + bounds +
           " /></view>";
}

/// A window of 100 by 50 pixels with the views a, left, and b, right, of 20 by 20.
inline std::string windowType(const std::string& attributes = "", const std::string& more = "")
{
    return "<windowtype name=\"Main\" class=\"ZWindowClass\"" + attributes +
           "><rect left=\"5\" top=\"6\" width=\"100\" height=\"50\" />" + more + "<subviews>" +
           testView("a", "left=\"10\" top=\"10\" width=\"20\" height=\"20\"") +
           testView("b", "left=\"60\" top=\"10\" width=\"20\" height=\"20\"") +
           "</subviews></windowtype>";
}

/// Fixture with a plug-in's application that knows windows and test views.
struct WindowFixture : testing::Test
{
    explicit WindowFixture(const std::string& description = "")
        : mResources(description)
    {
        mApp->GetClassRegistry().AddStandard<TestView>("TestViewClass");
        start(*mApp);
        TestView::log.clear();
    }

    static TestView& View(const ZWindow& window, const char* name)
    {
        return dynamic_cast<TestView&>(*window.GetRootView()->FindSubview(name));
    }

    const TestResources mResources;
    const std::unique_ptr<ZPlugin> mApp = makePlugin(mResources);
};

}  // namespace orvane
