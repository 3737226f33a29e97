// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/objects/ZApplication.h"
#include "zlib/common/objects/ZFiletype.h"
#include "zlib/common/objects/ZSemaphore.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <array>
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
class ZFontKeeper;
class ZResources;
class ZWindow;
class ZWindowKeeper;
class ZXMLElement;
struct ZFileRequest;

/// The application object. It reads its description, an XML resource, and creates the managers that
/// the description names; these create documents, windows and the audio network. The application is
/// a looper and handles its own messages; ZLOOPERSTART starts it.
///
/// A process may hold several applications. They share only the pointer to the current one, which a
/// handler without a looper belongs to. [interface thread, where nothing else is said]
class ZApp : public ZApplication
{
public:
    /// Creates a stand-alone application with the standard classes and no managers. The resources
    /// must outlive it; they hold the description (type "XML") and the texts ("strings.txt" of type
    /// "STRING"). [setup]
    explicit ZApp(const ZResources& resources);
    /// Destroys the managers: audio first, then classes, windows, documents and commands.
    ~ZApp() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    [[nodiscard]] ZApp* GetApp() override { return this; }
    /// Handles ZABOUT, ZMENUSELECTION, ZQUIT ("QuitInt"), ZWINDOWCLOSED (quits a stand-alone
    /// application) and ZGOTOURL ("URL"); passes ZDOCUMENTNEW to the document manager, ZSHOWDIALOG
    /// and ZSHOWSYSDIALOG to the window manager, and other messages to ZLooper. Throws ZException
    /// kGeneral when a field is missing.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;
    /// Reads the description and lets WaitUntilBuilt return. ZLOOPERSTART calls it.
    void Started() override;

    [[nodiscard]] virtual ZString GetTitle() const { return mTitle; }
    /// Sets out to the library's version, for example "1.0.0"; to the empty text when SetVersion
    /// was never called. [any thread]
    virtual void GetVersion(ZString& out) const;

    /// Each creates a manager from its XML element and replaces an existing one. Throws ZException
    /// kGeneral for a wrong tag; what the manager's constructor throws goes through. [setup]
    ///
    /// Does nothing here: only a plug-in has an audio manager.
    virtual void AddAudioManager(const boost::shared_ptr<ZXMLElement>& xml);
    /// Does nothing when no class of window managers is linked.
    virtual void AddWindowManager(const boost::shared_ptr<ZXMLElement>& xml);
    virtual void AddDocumentManager(const boost::shared_ptr<ZXMLElement>& xml);
    virtual void AddCommandList(const boost::shared_ptr<ZXMLElement>& xml);

    /// Does nothing here.
    virtual void ShowAbout();
    /// Returns the current window of the window manager, or null when there is no window. Throws
    /// ZException kGeneral when there is no window manager.
    [[nodiscard]] virtual boost::shared_ptr<ZWindow> GetMainWindow() const;
    /// Shows a file dialog, see ZFileChooser, and returns the chosen file, not yet opened; null
    /// when the user cancels. A name to save under that fits none of the types gets the extension
    /// of the first. A name that cannot be used is reported in a message box titled "File Error",
    /// and the result is null. The application must outlive the call.
    [[nodiscard]] virtual boost::shared_ptr<ZFile> ChooseSaveFile(const ZString& prompt,
                                                                  const ZString& title,
                                                                  const ZFiletypeList& types,
                                                                  std::int32_t window);
    [[nodiscard]] virtual boost::shared_ptr<ZFile> ChooseOpenFile(const ZString& prompt,
                                                                  const ZString& title,
                                                                  const ZFiletypeList& types,
                                                                  std::int32_t window);
    /// Finds, verifies and reads the description and runs its start-up commands. Throws ZException:
    /// kGeneral for a missing or damaged description, kBadSignature for an altered one, and what
    /// creating its parts throws. A stand-alone application shows the text in a message box and
    /// ends the process instead. [setup]
    virtual void ReadDescription();
    /// Returns once the description has been read. Gives up the interface lock while it waits.
    /// [any thread but the audio thread]
    virtual void WaitUntilBuilt();
    /// Runs before ReadDescription; does nothing here. [setup]
    virtual void OnStartup();
    /// Stops the audio, discards queued messages and closes all documents. When a document stays
    /// open, restarts the audio and returns false.
    [[nodiscard]] virtual bool CanQuit();
    /// Sets whether the application may end the process. True after construction. [setup]
    virtual void SetStandalone(bool standalone) { mStandalone = standalone; }
    /// Makes the fonts of a file known to texts at once; ignores a path without a file.
    virtual void LoadFont(const std::string& path);
    bool GetResourceString(std::int32_t id, ZString& out) override;
    /// Stores a number in the user's settings; false when the file cannot be written.
    virtual bool SetRegistryInt(const ZString& name, std::int32_t value);
    /// Reads a number from the user's settings; false, with out unchanged, when it is not there.
    virtual bool GetRegistryInt(const ZString& name, std::int32_t& out) const;
    /// Always throws ZException kGeneral: there is no MIDI manager.
    [[noreturn]] virtual void GetMidiManager() const;

    /// Return the manager. Throw ZException kGeneral when there is none.
    [[nodiscard]] ZDocumentManager* GetDocumentManager() const;
    [[nodiscard]] ZCommandList* GetCommandList() const;
    /// Always throws ZException kGeneral: there is no preference manager.
    [[noreturn]] void GetPreferenceManager() const;
    /// Return the manager, or null when there is none.
    [[nodiscard]] ZAudioManager* GetAudioManager() const { return mAudioManager.get(); }
    [[nodiscard]] ZWindowKeeper* GetWindowManager() const { return mWindowManager.get(); }
    [[nodiscard]] bool HasDocumentManager() const { return mDocumentManager != nullptr; }
    [[nodiscard]] bool HasCommandList() const { return mCommandList != nullptr; }
    /// Returns the current document, or null when there is none.
    [[nodiscard]] boost::shared_ptr<ZDocument> GetCurrentDocument() const;
    [[nodiscard]] ZClassRegistry& GetClassRegistry() override { return *mClassRegistry; }

    /// Ends the application's modal runs (menus, dialogs) and waits until the functions that began
    /// them have returned. Gives up the interface lock while it waits. Destructors call it first.
    void EndModalRuns();
    /// Enters and removes an open dialog, which is not owned. While there is one, windows that are
    /// no dialogs ignore input.
    void BeginModal(ZWindow& dialog);
    void EndModal(ZWindow& dialog);
    [[nodiscard]] bool IsModal() const { return !mModalWindows.empty(); }
    /// Returns the dialog that was opened last; null when there is none.
    [[nodiscard]] ZWindow* GetModalWindow() const;

    /// Names the XML resource that holds the description. [setup]
    void SetResourceName(const ZString& name) { mResourceName = name; }
    [[nodiscard]] const ZResources& GetResources() const override { return mResources; }
    /// Names a file to open once the description has been read; the empty text for none. [setup]
    void SetOpenAtStart(const ZString& path) { mOpenAtStart = path; }
    /// The exit code that ZQUIT asked for.
    [[nodiscard]] std::int32_t GetQuitCode() const { return mQuitCode; }
    /// Names the user's settings. An identifier in the description replaces it. [setup]
    void SetIdentifier(const ZString& identifier) { mIdentifier = identifier; }
    /// The font files that LoadFont found.
    [[nodiscard]] const std::vector<std::string>& GetFonts() const { return mFonts; }

    /// Sets what GetVersion of all applications returns: major, minor and third number.
    /// [library load]
    static void SetVersion(const std::array<std::int32_t, 3>& version);
    /// The number of applications in the process. The destructor of the last one ends the modal
    /// runs without an owner, so that no thread is inside them when the library is unloaded.
    /// [any thread]
    [[nodiscard]] static std::int32_t CountInstances();
    /// Returns the handler's application, or null when it has none that is a ZApp.
    [[nodiscard]] static ZApp* Of(ZHandler& handler);

protected:
    /// Sends the pending change messages of the current document and of the commands.
    void FlushElementChanges() override;
    /// Destroys the existing audio manager and takes the new one, which may be null. [setup]
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
    [[nodiscard]] boost::shared_ptr<ZFile> ChooseFile(ZFileRequest request);

    const ZResources& mResources;
    const std::unique_ptr<ZFontKeeper> mFontKeeper;  // null without drawing
    std::thread::id mMainThreadId;                   // of the thread that reads the description
    ZString mTitle;
    ZString mIdentifier;
    ZString mResourceName;
    std::unique_ptr<ZAudioManager> mAudioManager;
    std::unique_ptr<ZDocumentManager> mDocumentManager;
    std::unique_ptr<ZWindowKeeper> mWindowManager;
    std::unique_ptr<ZCommandList> mCommandList;
    std::unique_ptr<ZClassRegistry> mClassRegistry;
    std::vector<ZWindow*> mModalWindows;  // open dialogs in the order of their opening
    bool mStandalone = true;
    std::unique_ptr<ZBrowserLaunch> mBrowser;  // the last address that was opened
    ZString mOpenAtStart;
    std::int32_t mQuitCode = 0;
    std::vector<std::string> mFonts;
    ZSemaphore mBuilt{"built", 0};
};

}  // namespace orvane
