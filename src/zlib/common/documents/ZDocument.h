// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace orvane
{

class ZDocumentManager;
class ZFile;
class ZTransactionManager;

/// The root of an element tree, created and kept by a document manager. Documents are always held
/// by shared pointers. [interface thread]
class ZDocument : public ZElement
{
public:
    /// Reads a `doctype`: creates the elements under `elements` and the document managers under
    /// `documentmanagers`. Throws what creating them throws. [setup]
    ZDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZDocument() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZELEMENTCHANGED: calls ElementChanged with "elementid"; throws ZException kGeneral without
    /// the field. Other messages are ignored.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// The title, for title bars.
    [[nodiscard]] virtual ZString GetTitle() const { return mTitle; }
    /// Whether the document has unsaved changes.
    virtual void SetModified(bool modified) { mModified = modified; }
    [[nodiscard]] virtual bool IsModified() const { return mModified; }

    // Hooks for derived classes; they do nothing here.

    /// The document has its name and title but is not in its manager's list yet.
    virtual void DocumentMade();
    /// Stand around saving and around loading a preset.
    virtual void PresetBegins();
    virtual void PresetEnds();
    /// The document has become the current one, or an undo or redo has changed it.
    virtual void BecameCurrent();

    [[nodiscard]] virtual const boost::shared_ptr<ZTransactionManager>&
    GetTransactionManager() const
    {
        return mTransactionManager;
    }

    /// Returns false to keep the document open. True here.
    [[nodiscard]] virtual bool AgreesToClose();
    /// Returns false for a message that would do nothing now, so that a menu need not offer its
    /// command. True here.
    [[nodiscard]] virtual bool CanHandle(std::int32_t /*messageId*/) const { return true; }
    /// Reads the document's content from the file; false when it cannot, as here.
    [[nodiscard]] virtual bool ReadFile(ZFile& file);
    /// An element that the document observes has changed; for the id see elementIdOf. Does nothing
    /// here.
    virtual void ElementChanged(std::uint64_t elementId);
    using ZElement::ElementChanged;

    void SetTitle(const ZString& title) { mTitle = title; }
    /// Returns the first element of that name in the tree, or null when there is none.
    [[nodiscard]] boost::shared_ptr<ZElement> FindElement(std::string_view name) const;
    /// The name of the document manager that created the document.
    [[nodiscard]] const std::string& GetTypeName() const { return mTypeName; }
    void SetTypeName(std::string_view name) { mTypeName = name; }

private:
    void AddDocumentManagers(const boost::shared_ptr<ZXMLElement>& xml);

    ZString mTitle;
    std::string mTypeName;
    ZLockedList<std::shared_ptr<ZDocumentManager>> mDocumentManagers{"document managers"};
    bool mModified = false;
    boost::shared_ptr<ZTransactionManager> mTransactionManager;
};

}  // namespace orvane
