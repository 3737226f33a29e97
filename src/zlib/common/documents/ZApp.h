// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZFiletype.h"
#include "zlib/common/objects/ZSemaphore.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace orvane
{

class ZAudioManager;
class ZBrowserLaunch;
class ZCommandList;
class ZDocument;
class ZDocumentManager;
class ZFile;
class ZResources;
class ZWindow;
class ZWindowKeeper;
class ZXMLElement;

/// The application: reads its description, one XML resource, and builds its managers from it, which
/// build all the rest. Start it by ZLOOPERSTART. It is served by a looper of its own name and
/// handles its own messages.
///
/// Several may live in one process. They share nothing but the name of the current one, which
/// handlers without a looper ask for. [interface thread, but where it says otherwise]
class ZApp : public ZApplication
{
public:
    /// Makes the window manager from a `windowmanager`; it is then owned by the application.
    using WindowKeeperMaker =
        std::unique_ptr<ZWindowKeeper> (*)(const boost::shared_ptr<ZXMLElement>& xml, ZApp* app);

    /// A stand-alone application with the framework's classes and no manager. The resources hold
    /// the description, of type "XML", and the texts, "strings.txt" of type "STRING"; they must
    /// outlive the application. [setup]
    explicit ZApp(const ZResources& resources);
    /// Lets the managers go: audio, classes, windows, documents, commands.
    ~ZApp() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Itself.
    [[nodiscard]] ZApp* GetApp() override { return this; }
    /// ZABOUT, ZDOCUMENTNEW (to the document manager), the choice in a menu, ZQUIT, ZWINDOWCLOSED
    /// (the end of a stand-alone application), ZSHOWDIALOG and ZSHOWSYSDIALOG (to the window
    /// manager), ZGOTOURL ("URL"). Throws ZException -1 when a field is missing. The rest as
    /// ZLooper.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// ZLOOPERSTART: reads the description; then the application is built.
    void Started() override;

    [[nodiscard]] virtual ZString GetTitle() const { return mTitle; }
    /// Three numbers joined by dots where the library carries a record of its version; it carries
    /// none here, which gives an empty text.
    virtual void GetVersion(ZString& out) const { out = ZString(); }

    /// Each makes a manager from its element, in the place of one that is there. Throws ZException
    /// -1 for another tag; what the manager's constructor throws goes through. [setup]
    /// A stand-alone application has no audio manager here.
    virtual void AddAudioManager(const boost::shared_ptr<ZXMLElement>& xml);
    /// Does nothing when nobody makes window managers.
    virtual void AddWindowManager(const boost::shared_ptr<ZXMLElement>& xml);
    virtual void AddDocumentManager(const boost::shared_ptr<ZXMLElement>& xml);
    virtual void AddCommandList(const boost::shared_ptr<ZXMLElement>& xml);

    /// Nothing here.
    virtual void ShowAbout();
    /// Let the user choose where to save and what to open, see ZFileChooser; the file is named and
    /// not opened. A file to save is of one of the types: a name that is not gains the extension of
    /// the first. Null when none is chosen, or when the box "File Error" has told why it cannot be.
    /// The application outlives the dialog.
    [[nodiscard]] virtual boost::shared_ptr<ZFile> ChooseSaveFile(const ZString& prompt,
                                                                  const ZString& title,
                                                                  const ZFiletypes& types,
                                                                  std::int32_t window);
    [[nodiscard]] virtual boost::shared_ptr<ZFile> ChooseOpenFile(const ZString& prompt,
                                                                  const ZString& title,
                                                                  const ZFiletypes& types,
                                                                  std::int32_t window);
    /// Ends the application's modal runs and waits until those have returned that began them, with
    /// the interface lock given up. Comes before anything goes that they might touch.
    void EndModalRuns();
    /// A dialog of the application opens; it has closed. While one is open, windows that are none
    /// take nothing.
    void BeginModal() { ++mModalWindows; }
    void EndModal() { --mModalWindows; }
    [[nodiscard]] bool IsModal() const { return mModalWindows > 0; }
    /// The current window of the window manager, or null. Throws ZException -1 without a manager.
    [[nodiscard]] virtual boost::shared_ptr<ZWindow> GetMainWindow() const;
    /// Finds, checks and reads the description and runs its start-up commands. Throws ZException
    /// when the description is missing or damaged (-1) or its signature does not fit (5), and what
    /// its parts throw; a stand-alone application shows the text and ends the process instead.
    /// [setup]
    virtual void ReadDescription();
    /// Waits until the description has been read, however often. Gives up the interface lock
    /// meanwhile. [any thread but the audio thread]
    virtual void WaitUntilBuilt();
    /// Comes before ReadDescription. Nothing here.
    virtual void OnStartup();
    /// Stops the audio, drops what waits and closes all documents. False, with the audio started
    /// again, when a document stays open.
    [[nodiscard]] virtual bool CanQuit();
    /// Whether the process is the application's own to end. True at first.
    virtual void SetStandalone(bool standalone) { mStandalone = standalone; }
    /// Remembers a font file for the texts that ask for its font, if there is such a file.
    virtual void LoadFont(const std::string& path);
    bool GetResourceString(std::int32_t id, ZString& out) override;
    /// The user's settings under the application's identifier. False when a value cannot be stored;
    /// or, with out as it was, when there is none.
    virtual bool SetRegistryInt(const ZString& name, std::int32_t value);
    virtual bool GetRegistryInt(const ZString& name, std::int32_t& out) const;
    /// Throws ZException -1: no application has one.
    [[noreturn]] virtual void GetMidiManager() const;

    /// Throw ZException -1 when there is none.
    [[nodiscard]] ZDocumentManager* GetDocumentManager() const;
    [[nodiscard]] ZCommandList* GetCommandList() const;
    [[noreturn]] void GetPreferenceManager() const;
    /// Null when there is none.
    [[nodiscard]] ZAudioManager* GetAudioManager() const { return mAudioManager.get(); }
    [[nodiscard]] ZWindowKeeper* GetWindowManager() const { return mWindowManager.get(); }
    [[nodiscard]] bool HasDocumentManager() const { return mDocumentManager != nullptr; }
    [[nodiscard]] bool HasCommandList() const { return mCommandList != nullptr; }
    /// Null when there is none.
    [[nodiscard]] boost::shared_ptr<ZDocument> GetCurrentDocument() const;
    [[nodiscard]] ZClassRegistry& GetClassRegistry() override { return *mClassRegistry; }

    void SetResourceName(const ZString& name) { mResourceName = name; }
    [[nodiscard]] const ZString& GetResourceName() const { return mResourceName; }
    [[nodiscard]] const ZResources& GetResources() const override { return mResources; }
    /// A file to open once the application is built; empty for none.
    void SetOpenAtStart(const ZString& path) { mOpenAtStart = path; }
    /// What a stand-alone application's process ends with.
    [[nodiscard]] std::int32_t GetQuitCode() const { return mQuitCode; }
    /// The description's own identifier comes in its place.
    void SetIdentifier(const ZString& identifier) { mIdentifier = identifier; }
    [[nodiscard]] const ZString& GetIdentifier() const { return mIdentifier; }
    /// Window managers stand in a row above. Null for none.
    void SetWindowKeeperMaker(WindowKeeperMaker maker) { mMakeWindowKeeper = maker; }
    /// The thread that read the description.
    [[nodiscard]] std::thread::id GetMainThreadId() const { return mMainThreadId; }
    [[nodiscard]] const std::vector<std::string>& GetFonts() const { return mFonts; }

    /// Applications that live. With the last one end the modal runs that belong to nobody, so that
    /// no thread stays behind in them when the library goes. [any thread]
    [[nodiscard]] static std::int32_t CountInstances();

    /// The application of a handler, when it is one that has managers; else null.
    [[nodiscard]] static ZApp* Of(ZHandler& handler);

protected:
    /// The current document's marks, and those of the commands.
    void FlushElementChanges() override;
    /// The one before goes; null for none.
    void ReplaceAudioManager(std::unique_ptr<ZAudioManager> manager);

private:
    void BuildFromDescription();
    [[nodiscard]] boost::shared_ptr<ZXMLElement> LoadDescription() const;
    void AddManager(const boost::shared_ptr<ZXMLElement>& xml);
    void RunStartup(const ZXMLElement& startup);
    void CheckMenuSelection(const ZMessage& message) const;
    void HandleQuit(const boost::shared_ptr<const ZMessage>& message);
    void GoToUrl(const ZMessage& message);
    void OpenAtStart();

    const ZResources& mResources;
    std::thread::id mMainThreadId;
    ZString mTitle;
    ZString mIdentifier;
    ZString mResourceName;
    std::unique_ptr<ZAudioManager> mAudioManager;
    std::unique_ptr<ZDocumentManager> mDocumentManager;
    std::unique_ptr<ZWindowKeeper> mWindowManager;
    std::unique_ptr<ZCommandList> mCommandList;
    std::unique_ptr<ZClassRegistry> mClassRegistry;
    WindowKeeperMaker mMakeWindowKeeper = nullptr;
    std::int32_t mModalWindows = 0;
    bool mStandalone = true;
    std::unique_ptr<ZBrowserLaunch> mBrowser;
    ZString mOpenAtStart;
    std::int32_t mQuitCode = 0;
    std::vector<std::string> mFonts;
    ZSemaphore mBuilt{"built", 0};
};

}  // namespace orvane
