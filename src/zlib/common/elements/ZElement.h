// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zlib/common/buffers/ZRange.h"
#include "zlib/common/elements/DiscreteItem.h"
#include "zlib/common/objects/ZHandler.h"
#include "zlib/common/objects/ZLock.h"
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

/// One typed value of the application that others observe: a parameter, a choice from a list, a
/// buffer of data, a range, or a group of other elements. Views show and change elements, bays read
/// them, the document saves them, the host automates them. The elements of a document form a tree
/// whose inner nodes are groups. Nobody holds a copy of a value: everybody holds the element.
///
/// An operation that does not fit the type throws ZException -1 with a text that names it, and
/// changes nothing.
///
/// A change has two speeds. The setters of values run on any thread, the audio thread included:
/// they store and, unless quiet, mark the element. The flush turns marks into messages on the
/// interface thread, so that observers hear once at the next tick, however often a value changed.
///
/// Threads: values, bounds, defaults, the mark and the length of the discrete list are atomic, each
/// by itself. The discrete list has its own lock, which the audio thread never needs. Observers,
/// children, labels, units and flags have no lock: whoever touches them once audio runs holds the
/// interface lock. That goes for all that notifies, too.
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

    /// How a view formats a value; the element itself converts nothing.
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
        kShortLabel = 2,  // the four characters by which a host knows a parameter
    };

    /// An archivable element that the host does not see. bufferLength is in samples and counts for
    /// ZBUFFER only. Throws ZException when that buffer cannot be made: -1 for no samples, 2 for no
    /// memory. [setup]
    ZElement(std::string_view name, Type type, ZLooper* looper, std::uint32_t bufferLength = 0);
    /// From an archive, with children, labels and defaults; the application is the looper.
    /// archivable and exposed are true only where the XML says so. Throws ZException for an unknown
    /// word, a child that cannot be made, or a buffer whose samples are not all there. [setup]
    ZElement(const boost::shared_ptr<ZXMLElement>& xml, ZApplication* application);
    ~ZElement() override;

    [[nodiscard]] bool IsKindOf(std::string_view className) const override;
    [[nodiscard]] const char* GetClassName() const override;
    /// A tag "element" with name and the class "ZElementClass", also in derived classes.
    [[nodiscard]] boost::shared_ptr<ZXMLElement> ExtractHeader() const override;
    /// Adds the type and the value; of a group the archivable children. What belongs to the
    /// element's definition is not written: labels, units, defaults, flags, and the discrete list
    /// unless SetArchiveDiscreteList says so. Throws ZException -1 for a type that has no word, or
    /// for a buffer that is too long for an attribute.
    void ExtractBody(const boost::shared_ptr<ZXMLElement>& xml) const override;
    /// Takes over the value, or those of the children that the XML names, and tells all observers
    /// at once. Does nothing when the XML is null or names another element; what it does not
    /// mention stays. Throws ZException -1 when a buffer does not fit or its samples cannot be
    /// read, with that buffer as it was.
    void RestoreBody(const boost::shared_ptr<ZXMLElement>& xml) override;

    /// The first text of at most maxLength characters among the name and the labels by rising kind;
    /// the last of these when none fits.
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

    /// For derived classes that have a value of their own. Throws ZException -1 here.
    virtual void GetValue(float& out) const;
    virtual void GetValue(ZString& out) const;

    /// Items in the list. [any thread, audio thread included]
    [[nodiscard]] virtual std::int32_t CountDiscreteValues() const;
    /// A copy of the item's text, an empty one when there is no such item. [any but audio thread]
    [[nodiscard]] virtual boost::shared_ptr<ZString> GetDiscreteString(std::int32_t index) const;
    /// Empties the list, which leaves the index at 0. Unless quiet, the mark is set, too.
    virtual void RemoveDiscreteValues(bool quiet);
    /// Stores the index as given. [any thread, audio thread included]
    virtual void SetDiscrete(std::int32_t index, bool quiet);
    /// [any thread, audio thread included]
    [[nodiscard]] virtual std::int32_t GetDiscrete() const;
    virtual void SetDiscreteDefault(std::int32_t index);
    [[nodiscard]] virtual std::int32_t GetDiscreteDefault() const;

    /// Stores the value as given, whatever the range is. [any thread, audio thread included]
    virtual void SetZFloat(float value, bool quiet);
    /// Does nothing when the clamped value is what the element has. What is not a number becomes
    /// Min. [any thread, audio thread included]
    virtual void SetZFloatClamped(float value, bool quiet);
    /// [any thread, audio thread included]
    [[nodiscard]] virtual float GetZFloat() const;
    virtual void SetZFloatDefault(float value);
    [[nodiscard]] virtual float GetZFloatDefault() const;
    /// Unless quiet, ElementUpdated; the value stays as it is.
    virtual void SetRange(float min, float max, bool quiet);
    /// Max - Min. [any thread, audio thread included; so are the next two]
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
    /// False, with out as it was, when index is not that of a child.
    [[nodiscard]] virtual bool GetSubElement(std::int32_t index,
                                             boost::shared_ptr<ZElement>& out) const;
    /// The first element of that name below this one: a child, or what is found inside it, child by
    /// child. False, with out as it was, when there is none.
    [[nodiscard]] virtual bool FindSubElement(std::string_view name,
                                              boost::shared_ptr<ZElement>& out) const;

    /// The value has changed. Deferred: sets the mark, and the next flush tells the observers [any
    /// thread, audio thread included]. Else posts ZELEMENTCHANGED to all observers but the sender.
    virtual void ElementChanged(const ZHandler* sender, bool deferred);
    /// The form of the element has changed, not only its value: sets the mark and posts
    /// ZELEMENTUPDATED to all observers but the sender.
    virtual void ElementUpdated(const ZHandler* sender);
    /// The discrete list has changed: brings index and default into it, to 0 for an empty list, and
    /// posts ZELEMENTUPDATED to all observers but the sender.
    virtual void DiscreteListChanged(const ZHandler* sender);

    /// [any thread, audio thread included]
    void SetZPos(std::int64_t value);
    [[nodiscard]] std::int64_t GetZPos() const;

    /// Copies as many samples as both buffers hold; the element's own buffer as source is taken as
    /// changed in place. Nobody may write to the source meanwhile. [any thread, audio included]
    void SetZBuffer(const ZBuffer& buffer, bool quiet);
    /// The element's own buffer, which lives as long as the element and never changes its length.
    /// Where both threads touch the samples, each goes through std::atomic_ref.
    /// [any thread, audio thread included]
    [[nodiscard]] ZBuffer* GetZBuffer();
    [[nodiscard]] const ZBuffer* GetZBuffer() const;
    /// Bounds of the samples for display; the samples stay as they are. Then ElementUpdated.
    void SetZBufferRange(float min, float max);
    [[nodiscard]] float ZBufferMin() const;
    [[nodiscard]] float ZBufferMax() const;

    /// Appends an item and gives back its index. Narrow text is UTF-8; of XML the attribute name
    /// is the text, and the item keeps the XML.
    std::int32_t AddDiscreteValue(const char* text);
    std::int32_t AddDiscreteValue(const ZString& text);
    std::int32_t AddDiscreteValue(const boost::shared_ptr<const ZXMLElement>& xml);
    /// Replaces all items and calls DiscreteListChanged once. Filling a long list item by item
    /// would make its observers read it again for each of them.
    void ReplaceDiscreteValues(const std::vector<ZString>& texts);

    /// Appends an observer, which has to remove itself before it dies, and posts it a
    /// ZATTACHEDTOELEMENT. Null is passed over.
    void AddObserver(ZHandler* observer);
    /// Takes the observer off the list, however often it stands there.
    void RemoveObserver(const ZHandler* observer);
    [[nodiscard]] std::int32_t GetObserverCount() const;
    /// Null when there is none at that index.
    [[nodiscard]] ZHandler* GetObserver(std::int32_t index) const;
    /// Posts the message to every observer that has a looper, in order, but not to the sender: at
    /// most one ZELEMENTCHANGED waits for each element and observer.
    void NotifyObservers(const boost::shared_ptr<const ZMessage>& message, const ZHandler* sender);

    /// Appends the child, unless it has a container, and becomes its container.
    void AddSubElement(const boost::shared_ptr<ZElement>& child);
    /// The element that this one is a child of; null for a root.
    [[nodiscard]] ZElement* GetContainer() const { return mContainer; }

    /// The mark of a value that the host itself has set: at the flush all observers hear of it but
    /// the application, which would hand it back to the host. [any thread, audio thread included]
    void MarkChangedByHost();
    /// Whether there is a change that the host has not heard of; the caller tells it now, and from
    /// here on the mark is one of MarkChangedByHost.
    [[nodiscard]] bool ClaimHostNotification();
    /// The flush's step for one element: takes the mark and, where it was set, tells the observers;
    /// all but the application when the host knows already. A change that comes meanwhile is told
    /// at the next flush. [interface thread]
    void FlushMark(const ZHandler* application);
    /// That step for all elements below this one that have no children. [interface thread]
    void FlushMarksBelow(const ZHandler* application) const;

    [[nodiscard]] Type GetType() const { return mType; }
    /// Only archivable children are written with their group.
    [[nodiscard]] bool IsArchivable() const { return mArchivable; }
    void SetArchivable(bool archivable) { mArchivable = archivable; }
    /// Whether the archive of a discrete element holds its list, too.
    [[nodiscard]] bool ArchivesDiscreteList() const { return mArchiveDiscreteList; }
    void SetArchiveDiscreteList(bool archive) { mArchiveDiscreteList = archive; }
    /// Whether the host may see the element as a parameter.
    [[nodiscard]] bool IsExposed() const { return mExposed; }
    void SetExposed(bool exposed) { mExposed = exposed; }
    void SetUnits(Units units) { mUnits = units; }

protected:
    /// Makes a child of every "element" in the XML, by its class. Throws ZException -1 for a class
    /// that is not registered or is none of elements.
    void AddChildElements(const ZXMLElement& xml);

private:
    using Items = std::vector<boost::shared_ptr<const DiscreteItem>>;

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
    [[nodiscard]] Items CopyItems() const;
    void ReplaceItems(Items items);
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
    bool mArchiveDiscreteList = false;
    bool mExposed = false;
    std::vector<ZHandler*> mObservers;
    mutable ZLock mDiscreteLock{"discretelist"};
    Items mDiscreteList;                          // guarded by mDiscreteLock
    std::atomic<std::int32_t> mDiscreteCount{0};  // written under mDiscreteLock
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
