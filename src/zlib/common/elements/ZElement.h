// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/buffers/ZRange.h"
#include "zlib/common/elements/DiscreteItem.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZLockedList.h"
#include "zlib/common/objects/ZString.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

namespace orvane
{

class ZBuffer;

/// One typed, observable value of the application: a parameter, a choice from a list, a buffer of
/// data, a range, or a group of other elements. Views show and change elements, bays read them, the
/// document saves them, the host automates them. The elements of a document form a tree whose inner
/// nodes are groups. Values are not copied: all users share the element.
///
/// An operation that does not fit the type throws ZException kGeneral with a text that names it,
/// and changes nothing.
///
/// The setters of values run on any thread, including the audio thread: they store the value and,
/// unless quiet, mark the element as changed. The flush on the interface thread turns marks into
/// messages, so that observers get one message at the next tick, however often a value changed.
///
/// Threads: values, bounds, defaults, the mark and the length of the discrete list are atomic, each
/// by itself. The discrete list has its own lock, which the audio thread never takes. Observers,
/// children, labels, units and flags are accessed under the interface lock, and so are all
/// operations that notify observers; both are asserted.
class ZElement : public ZHandler
{
public:
    /// The numbers are part of the format, the names are its words.
    enum Type : std::int32_t
    {
        ZGROUP = 0,     // no value; has children
        ZMESSAGE = 1,   // no value
        ZDISCRETE = 2,  // index into a list of texts
        ZFLOAT = 3,     // float with a range from Min to Max
        ZPOS = 4,       // position in samples
        ZBUFFER = 5,    // samples, with bounds for display
        ZRANGE = 6,     // range of samples, with a range that limits it
    };

    /// How a view formats a value. The element itself does not convert it.
    enum Units : std::int32_t
    {
        kGeneric = 0,
        kPercent = 1,
        kSeconds = 2,
        kSampleFrames = 3,
        kPhase = 4,
        kRate = 5,
        kHertz = 6,
        kCents = 7,
        kDecibels = 8,
        kLinearGain = 9,
        kMilliseconds = 10,
    };

    enum LabelKind : std::int32_t
    {
        kFullLabel = 0,
        kMediumLabel = 1,
        kShortLabel = 2,  // the four-character id of a host parameter
    };

    /// Makes an element that is archivable and not exposed. bufferLength, in samples, is used for
    /// ZBUFFER only; for that, throws ZException kGeneral for a length of 0 and kOutOfMemory when
    /// there is no memory. [setup]
    ZElement(std::string_view name, Type type, ZLooper* looper, std::uint32_t bufferLength = 0);
    /// Makes an element from its XML definition, with children, labels and defaults; the
    /// application is the looper. The element is archivable and exposed only if the XML says so.
    /// Throws ZException for an unknown word, a child that cannot be made, or a buffer with missing
    /// samples. [setup]
    ZElement(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZElement() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// Makes a tag "element" with name and the class "ZElementClass", also in derived classes.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    /// Adds the type and the value, for a group the archivable children. Labels, units, defaults
    /// and flags are part of the definition and not written, nor is the discrete list unless
    /// SetArchiveDiscreteList is set. Throws ZException kGeneral for a type without a word and for
    /// a buffer that is too long for an attribute.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Restores the value, for a group those of the children that the XML names, and posts
    /// ZELEMENTCHANGED to all observers at once. Does nothing when the XML is null or has another
    /// name; values that it does not mention stay. Throws ZException kGeneral when a buffer does
    /// not fit or its samples cannot be read, with that buffer as it was.
    void RestoreBody(const boost::shared_ptr<ZXMLElement>& xml) override;

    /// The first of the name and the labels, by rising kind, that has at most maxLength characters;
    /// the last label when none is short enough.
    [[nodiscard]] virtual ZString GetLabelToFit(std::int32_t maxLength) const;
    /// The label of that kind, else the name.
    [[nodiscard]] virtual ZString GetLabel(std::int32_t kind) const;
    virtual void SetLabel(std::int32_t kind, const ZString& text);
    virtual void ClearLabels();
    [[nodiscard]] virtual Units GetUnits() const;

    /// [any thread]
    [[nodiscard]] virtual bool IsMarkedChanged() const;
    /// [any thread]
    virtual void ClearMarkedChanged();

    /// For derived classes with a value of their own. Throws ZException kGeneral in ZElement.
    virtual void GetValue(float& out) const;
    virtual void GetValue(ZString& out) const;

    /// The number of items in the list. [any thread, audio thread included]
    [[nodiscard]] virtual std::int32_t CountDiscreteValues() const;
    /// A copy of the item's text, empty when there is no such item. [any but the audio thread]
    [[nodiscard]] virtual boost::shared_ptr<ZString> GetDiscreteString(std::int32_t index) const;
    /// Empties the list and sets index and default to 0. Unless quiet, marks the element.
    virtual void RemoveDiscreteValues(bool quiet);
    /// Stores the index as given. [any thread, audio thread included]
    virtual void SetDiscrete(std::int32_t index, bool quiet);
    /// [any thread, audio thread included]
    [[nodiscard]] virtual std::int32_t GetDiscrete() const;
    virtual void SetDiscreteDefault(std::int32_t index);
    [[nodiscard]] virtual std::int32_t GetDiscreteDefault() const;

    /// Stores the value as given, whatever the range is. [any thread, audio thread included]
    virtual void SetZFloat(float value, bool quiet);
    /// Stores the value clamped to the range, NaN as Min(). Does nothing when that is the value
    /// now. [any thread, audio thread included]
    virtual void SetZFloatClamped(float value, bool quiet);
    /// [any thread, audio thread included]
    [[nodiscard]] virtual float GetZFloat() const;
    virtual void SetZFloatDefault(float value);
    [[nodiscard]] virtual float GetZFloatDefault() const;
    /// Sets Min() and Max(); does not clamp the value. Unless quiet, calls ElementUpdated.
    virtual void SetRange(float min, float max, bool quiet);
    /// Max() - Min(). These three: [any thread, audio thread included]
    [[nodiscard]] virtual float Range() const;
    [[nodiscard]] virtual float Min() const;
    [[nodiscard]] virtual float Max() const;

    /// Start and length are stored one after the other: a reader on another thread may see the
    /// start of one range and the length of the next. [any thread, audio thread included]
    virtual void SetZRange(const ZRange& range);
    [[nodiscard]] virtual ZRange GetZRange() const;
    virtual void SetZRangeLimit(const ZRange& range);
    [[nodiscard]] virtual ZRange GetZRangeLimit() const;

    [[nodiscard]] virtual std::int32_t GetSubElementCount() const;
    /// False, with out unchanged, when there is no child at that index.
    [[nodiscard]] virtual bool GetSubElement(std::int32_t index,
                                             boost::shared_ptr<ZElement>& out) const;
    /// Finds the first element of that name below this one, depth first. False, with out unchanged,
    /// when there is none.
    [[nodiscard]] virtual bool FindSubElement(std::string_view name,
                                              boost::shared_ptr<ZElement>& out) const;

    /// Called when the value has changed. deferred: marks the element, and the next flush notifies
    /// the observers [any thread, audio thread included]. Else posts ZELEMENTCHANGED to all
    /// observers but the sender.
    virtual void ElementChanged(const ZHandler* sender, bool deferred);
    /// Called when more than the value has changed, such as the range: marks the element and posts
    /// ZELEMENTUPDATED to all observers but the sender.
    virtual void ElementUpdated(const ZHandler* sender);
    /// Called when the discrete list has changed: clamps index and default to the list, 0 for an
    /// empty one, and posts ZELEMENTUPDATED to all observers but the sender.
    virtual void DiscreteListChanged(const ZHandler* sender);

    /// [any thread, audio thread included]
    void SetZPos(std::int64_t value);
    [[nodiscard]] std::int64_t GetZPos() const;

    /// Copies as many samples as both buffers hold. Given the element's own buffer, only marks it
    /// as changed. No thread may change the source meanwhile. [any thread, audio thread included]
    void SetZBuffer(const ZBuffer& buffer, bool quiet);
    /// The element's own buffer, which lives as long as the element and keeps its length. Samples
    /// that several threads use are accessed through std::atomic_ref.
    /// [any thread, audio thread included]
    [[nodiscard]] ZBuffer* GetZBuffer();
    [[nodiscard]] const ZBuffer* GetZBuffer() const;
    /// Sets the display bounds of the samples and calls ElementUpdated.
    void SetZBufferRange(float min, float max);
    [[nodiscard]] float ZBufferMin() const;
    [[nodiscard]] float ZBufferMax() const;

    /// Appends an item and gives back its index. Narrow text is UTF-8. An item from XML has the
    /// text of the attribute "name" and keeps the XML.
    std::int32_t AddDiscreteValue(const char* text);
    std::int32_t AddDiscreteValue(const ZString& text);
    std::int32_t AddDiscreteValue(const boost::shared_ptr<const ZXMLElement>& xml);
    /// Replaces all items and calls DiscreteListChanged once. Filling a long list item by item
    /// would make its observers read it again for each of them.
    void ReplaceDiscreteValues(const std::vector<ZString>& texts);

    /// Appends an observer and posts a ZATTACHEDTOELEMENT to it. The observer removes itself before
    /// it is destroyed. Ignores null.
    void AddObserver(ZHandler* observer);
    /// Removes the observer, however often it has been added.
    void RemoveObserver(const ZHandler* observer);
    [[nodiscard]] std::int32_t GetObserverCount() const;
    /// Null when there is none at that index.
    [[nodiscard]] ZHandler* GetObserver(std::int32_t index) const;
    /// Posts the message to every observer that has a looper, in order, except the sender. At most
    /// one ZELEMENTCHANGED per element and observer is queued.
    void NotifyObservers(const boost::shared_ptr<const ZMessage>& message, const ZHandler* sender);

    /// Appends a child and becomes its container. Ignores a child that has one.
    void AddSubElement(const boost::shared_ptr<ZElement>& child);
    /// The parent element; null for a root.
    [[nodiscard]] ZElement* GetContainer() const { return mContainer; }

    /// Marks a value that the host has set: the flush notifies all observers except the
    /// application, which would send it back to the host. [any thread, audio thread included]
    void MarkChangedByHost();
    /// Whether a change is marked that the host does not know. If so, changes the mark to that of
    /// MarkChangedByHost, and the caller notifies the host. [any thread]
    [[nodiscard]] bool ClaimHostNotification();
    /// Clears the mark and, if it was set, notifies the observers, but not the application when the
    /// host knows the change. A later change is notified at the next flush. [interface thread]
    void FlushMark(const ZHandler* application);
    /// Calls FlushMark for all elements below this one that have no children. [interface thread]
    void FlushMarksBelow(const ZHandler* application) const;

    [[nodiscard]] Type GetType() const { return mType; }
    /// Whether the element's value belongs to what is saved of its group.
    [[nodiscard]] bool IsArchivable() const { return mArchivable; }
    /// Whether an archive of the group that is written now holds the element.
    [[nodiscard]] bool IsArchivedNow() const
    {
        return mArchivable && (mArchivedAtDefault || GetDiscrete() != GetDiscreteDefault());
    }
    void SetArchivable(bool archivable) { mArchivable = archivable; }
    /// Whether a discrete element is also written while it has its default; true at first. Where it
    /// is not, an archive without the element means the default, and who loads it must set that.
    void SetArchivedAtDefault(bool archived) { mArchivedAtDefault = archived; }
    /// Whether the archive of a discrete element also holds its list; false at first.
    void SetArchiveDiscreteList(bool archive) { mArchiveDiscreteList = archive; }
    /// Whether the element is a host parameter.
    [[nodiscard]] bool IsExposed() const { return mExposed; }
    void SetExposed(bool exposed) { mExposed = exposed; }
    void SetUnits(Units units) { mUnits = units; }

protected:
    /// Makes a child of every tag "element" in the XML, by its class. Throws ZException kGeneral
    /// for a class that is not registered or makes no elements.
    void AddChildElements(const ZXMLElement& xml);

private:
    class SharedRange
    {
    public:
        void Store(const ZRange& range) noexcept;
        [[nodiscard]] ZRange Load() const noexcept;

    private:
        std::atomic<std::int64_t> mStart{0};
        std::atomic<std::int64_t> mLength{0};
    };

    // Bits of mChanged.
    static constexpr std::uint8_t kChanged = 1;
    static constexpr std::uint8_t kHostUnaware = 2;

    void RequireType(Type type, const char* failure) const;
    std::int32_t AppendItem(boost::shared_ptr<const DiscreteItem> item);
    void BringIntoList(std::atomic<std::int32_t>& index) const;
    void Notify(std::int32_t messageId, const ZHandler* sender);
    void StoreSamples(const ZBuffer& buffer);
    [[nodiscard]] std::unique_ptr<ZBuffer> CopySamples() const;

    [[nodiscard]] boost::shared_ptr<ZElement> MakeChild(const boost::shared_ptr<ZXMLElement>& xml);

    void ReadLabels(const ZXMLElement& xml);
    void ReadValue(const ZXMLElement& xml);
    void ReadDiscrete(const ZXMLElement& xml);
    void ReadFloat(const ZXMLElement& xml);
    void ReadBuffer(const ZXMLElement& xml);
    void ReadRanges(const ZXMLElement& xml);
    void WriteValue(ZXMLElement& xml) const;
    void WriteChildren(ZXMLElement& xml) const;
    void WriteDiscrete(ZXMLElement& xml) const;
    void WriteFloat(ZXMLElement& xml) const;
    void WriteRanges(ZXMLElement& xml) const;
    void WriteBuffer(ZXMLElement& xml) const;
    void RestoreValue(const ZXMLElement& xml);
    void RestoreChildren(const ZXMLElement& xml);
    void RestoreDiscrete(const ZXMLElement& xml);
    void RestoreBuffer(const ZXMLElement& xml);

    Type mType;
    std::vector<boost::shared_ptr<ZElement>> mSubElements;
    ZElement* mContainer = nullptr;
    bool mArchivable = true;
    bool mArchivedAtDefault = true;
    bool mArchiveDiscreteList = false;
    bool mExposed = false;
    std::vector<ZHandler*> mObservers;
    ZLockedList<boost::shared_ptr<const DiscreteItem>> mDiscreteList{"discretelist"};
    std::atomic<std::int32_t> mDiscreteValue{0};
    std::atomic<std::int32_t> mDiscreteDefault{0};
    std::atomic<float> mFloatValue{0.0f};
    std::atomic<float> mFloatDefault{0.0f};
    std::atomic<float> mMin{-1.0f};
    std::atomic<float> mMax{1.0f};
    std::atomic<std::int64_t> mPosValue{0};
    std::unique_ptr<ZBuffer> mBuffer;  // null unless the type is ZBUFFER
    std::atomic<float> mBufferMin{-1.0f};
    std::atomic<float> mBufferMax{1.0f};
    SharedRange mRange;
    SharedRange mRangeLimit;
    std::map<std::int32_t, ZString> mLabels;
    Units mUnits = kGeneric;
    std::atomic<std::uint8_t> mChanged{0};
};

}  // namespace orvane
