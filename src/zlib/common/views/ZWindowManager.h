// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/documents/ZWindowKeeper.h"
#include "zlib/common/drawing/ZDrawingLibrary.h"
#include "zlib/common/native/ZNativeWindow.h"
#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/views/ZDocumentMaps.h"
#include "zlib/common/views/ZWindowType.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace orvane
{

class ZApplication;
class ZDocument;
class ZMessage;
class ZWindow;
class ZXMLElement;

/// Holds the window types of a description and the table of which document gets which window, makes
/// the windows and passes messages to them.
/// [interface thread, or any other but the audio thread under the interface lock]
class ZWindowManager : public ZWindowKeeper
{
public:
    /// A tag other than `windowmanager` is traced and leaves the manager empty. parentWindow is the
    /// window that a nested manager belongs to, else null.
    ZWindowManager(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application,
                   ZWindow* parentWindow = nullptr);
    ~ZWindowManager() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Acts on messages about documents and windows and forwards all others to every window. Throws
    /// ZException kGeneral when a field is missing, and what building a window throws.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// Add the entries of a `documenttypes`, or of a `windowtypes`, to those that are there;
    /// another tag is traced and ignored. [setup]
    void AddDocumentMapTypes(const ZXMLElement& xml);
    void AddWindowTypes(const ZXMLElement& xml);

    /// Returns null when there is none at that index.
    [[nodiscard]] boost::shared_ptr<ZWindow> GetWindow(std::int32_t index) const;
    [[nodiscard]] std::int32_t GetWindowCount() const { return mWindows.Count(); }
    [[nodiscard]] boost::shared_ptr<ZWindow> CurrentWindow() const { return GetWindow(mCurrent); }
    [[nodiscard]] boost::shared_ptr<ZWindow> GetCurrentWindow() const override
    {
        return CurrentWindow();
    }
    [[nodiscard]] std::int32_t GetTopLevel(std::int32_t window) const override;
    [[nodiscard]] double GetScale(std::int32_t window) const override;

private:
    using Message = boost::shared_ptr<const ZMessage>;
    using Types = std::vector<std::shared_ptr<const ZWindowType>>;
    using Windows = std::vector<boost::shared_ptr<ZWindow>>;

    void HandleDocumentNew(const Message& message);
    void HandleDocumentChanged(const Message& message);
    void HandleDocumentClosed(const Message& message);
    void HandleWindowNew(const Message& message);
    void HandleShow(const Message& message);
    void HandleShowDialog(const ZMessage& message);
    void HandleEnabling(const Message& message);
    void SetWindowScale(const ZMessage& message, double scale);
    void UpdateWindows();
    [[nodiscard]] boost::shared_ptr<ZWindow> FindWindow(std::int32_t nativeHandle) const;

    void MakeWindows(const ZDocumentMap& map, const Message& message);
    [[nodiscard]] Types FindTypes(const std::string& name) const;
    [[nodiscard]] boost::shared_ptr<ZWindow> BuildWindow(const ZWindowType& type);
    void RemoveWindow(const boost::shared_ptr<ZWindow>& window, const Message& message);
    void SendToWindows(const Message& message) const;
    void SendToAll(const Message& message) const;
    static void SendToNested(const ZWindow& window, const Message& message);
    void SendToNestedOfCurrent(const Message& message) const;

    const ZDrawingLibrary mDrawing;  // outlives the windows, which draw
    ZDocumentMaps mDocumentMaps{"document maps"};
    ZLockedList<std::shared_ptr<const ZWindowType>> mWindowTypes{"window types"};
    ZLockedList<boost::shared_ptr<ZWindow>> mWindows{"window instances"};
    std::int32_t mCurrent = 0;
    ZWindow* const mParentWindow;
};

}  // namespace orvane
