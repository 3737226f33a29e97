// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/elements/ZElement.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvane
{

class ZDocumentManager;
class ZFile;
class ZTransactionManager;

/// The group at the top of an element tree, which a document manager makes and keeps. Documents are
/// always held by shared pointers. [interface thread]
class ZDocument : public ZElement
{
public:
    /// From a document type: makes the elements under `elements` and the managers under
    /// `documentmanagers`. Throws ZException -1 for one that cannot be made. [setup]
    ZDocument(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZDocument() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// ZELEMENTCHANGED: ElementChanged with its "elementid"; without that throws ZException -1.
    /// All else ends here.
    void HandleZMessage(boost::shared_ptr<const ZMessage> message) override;

    /// For the title bar.
    [[nodiscard]] virtual ZString GetTitle() const { return mTitle; }
    virtual void SetTitle(const ZString& title) { mTitle = title; }
    /// Whether there is something to save.
    virtual void SetModified(bool modified) { mModified = modified; }
    [[nodiscard]] virtual bool IsModified() const { return mModified; }

    /// The document has its name and title, but is in no list yet. Nothing here.
    virtual void DocumentMade();
    /// A preset is about to be saved or loaded; it has been. Nothing here.
    virtual void PresetBegins();
    virtual void PresetEnds();
    /// The document is the current one. Nothing here.
    virtual void BecameCurrent();
    /// False keeps the document open. True here.
    [[nodiscard]] virtual bool AgreesToClose();
    /// Takes in what a file holds. False for a file that it cannot read; so here.
    [[nodiscard]] virtual bool ReadFile(ZFile& file);
    /// An element that the document observes has changed: its identity, see elementIdOf. Nothing
    /// here.
    virtual void ElementChanged(std::uint64_t elementId);
    using ZElement::ElementChanged;

    [[nodiscard]] virtual const boost::shared_ptr<ZTransactionManager>&
    GetTransactionManager() const
    {
        return mTransactionManager;
    }

    /// The first element of that name in the tree; null when there is none.
    [[nodiscard]] boost::shared_ptr<ZElement> FindElement(std::string_view name) const;
    /// The name of the manager that made the document.
    [[nodiscard]] const std::string& GetTypeName() const { return mTypeName; }
    void SetTypeName(std::string_view name) { mTypeName = name; }

    /// The managers of documents that belong to this one.
    [[nodiscard]] const std::vector<std::unique_ptr<ZDocumentManager>>& GetDocumentManagers() const
    {
        return mDocumentManagers;
    }

protected:
    /// Makes a manager of each `documentmanager`. Another tag than `documentmanagers` is traced and
    /// passed over. [setup]
    void AddDocumentManagers(const boost::shared_ptr<ZXMLElement>& xml);

private:
    ZString mTitle;
    std::string mTypeName;
    std::vector<std::unique_ptr<ZDocumentManager>> mDocumentManagers;
    bool mModified = false;
    boost::shared_ptr<ZTransactionManager> mTransactionManager;
};

}  // namespace orvane
