// SPDX-License-Identifier: GPL-3.0-or-later
#include "kestrune/common/engine/KestruneRecordRing.h"

#include <algorithm>
#include <array>
#include <cassert>

namespace orvane
{

namespace
{

constexpr int kMedianRecords = 9;
constexpr int kRepairAge = 4;  // the middle one of nine records
constexpr float kHoldBelow = 0.5f;
constexpr float kHeldVoicing = 0.75f;
constexpr float kWholeToneUp = 1.1224999f;
constexpr float kWholeToneDown = 0.8909f;

struct WeightedPeriod
{
    float period;
    float weight;
};

using MedianWindow = std::array<WeightedPeriod, kMedianRecords>;

/// Insertion sort, which is stable and allocates nothing.
void sortByPeriod(MedianWindow& window)
{
    for (auto item = window.begin() + 1; item != window.end(); ++item)
        for (auto later = item; later != window.begin(); --later) {
            if ((later - 1)->period <= later->period)
                break;
            std::swap(*(later - 1), *later);
        }
}

}  // namespace

void KestruneRecordRing::Allocate(int count)
{
    assert(count >= kMedianRecords);
    mRecords.resize(static_cast<std::size_t>(count));
}

void KestruneRecordRing::Fill(float period) noexcept
{
    KestruneAnalysisRecord record;
    record.period = period;
    std::fill(mRecords.begin(), mRecords.end(), record);
    mWrite = 0;
    mRead = 0;
    mIsEmpty = true;
}

void KestruneRecordRing::Append(const KestruneAnalysisRecord& record) noexcept
{
    const auto count = static_cast<int>(mRecords.size());
    if (!mIsEmpty)
        mWrite = (mWrite + 1) % count;
    if (!mIsEmpty && mWrite == mRead)
        mRead = (mRead + 1) % count;
    mIsEmpty = false;
    mRecords[static_cast<std::size_t>(mWrite)] = record;
}

void KestruneRecordRing::Repair() noexcept
{
    const bool fading =
        Back(0).hold < kHoldBelow || Back(1).hold < kHoldBelow || Back(2).hold < kHoldBelow;
    const float median = WeightedMedianPeriod();

    KestruneAnalysisRecord& record = Back(kRepairAge);
    if (fading)
        record.hold = std::max(record.hold, kHeldVoicing);
    const float ratio = record.period / median;
    if (ratio > kWholeToneUp || ratio < kWholeToneDown)
        record.period = median;
}

float KestruneRecordRing::WeightedMedianPeriod() const noexcept
{
    MedianWindow window;
    float total = 0.0f;
    for (int age = 0; age < kMedianRecords; ++age) {
        const KestruneAnalysisRecord& record = Back(age);
        window[static_cast<std::size_t>(age)] = {record.period, record.hold};
        total += record.hold;
    }
    sortByPeriod(window);

    float sum = 0.0f;
    for (const WeightedPeriod& item : window) {
        sum += item.weight;
        if (sum >= total * 0.5f)
            return item.period;
    }
    return window.back().period;
}

double KestruneRecordRing::FinalUntil() const noexcept
{
    // Values behind this record lie between it and the one that is repaired next.
    return Back(kRepairAge).time;
}

float KestruneRecordRing::PeriodAt(double time) const noexcept
{
    return At(time, &KestruneAnalysisRecord::period);
}

float KestruneRecordRing::StrengthAt(double time) const noexcept
{
    return At(time, &KestruneAnalysisRecord::strength);
}

float KestruneRecordRing::HoldAt(double time) const noexcept
{
    return At(time, &KestruneAnalysisRecord::hold);
}

const KestruneAnalysisRecord& KestruneRecordRing::Back(int age) const noexcept
{
    return mRecords[static_cast<std::size_t>(IndexBack(age))];
}

KestruneAnalysisRecord& KestruneRecordRing::Back(int age) noexcept
{
    return mRecords[static_cast<std::size_t>(IndexBack(age))];
}

int KestruneRecordRing::IndexBack(int age) const noexcept
{
    assert(age >= 0 && age < static_cast<int>(mRecords.size()));
    const int index = mWrite - age;
    return index < 0 ? index + static_cast<int>(mRecords.size()) : index;
}

float KestruneRecordRing::At(double time, float KestruneAnalysisRecord::*value) const noexcept
{
    const auto count = static_cast<int>(mRecords.size());
    const KestruneAnalysisRecord* record = mRecords.data();
    if (time >= record[mWrite].time)
        return record[mWrite].*value;
    if (time <= record[mRead].time)
        return record[mRead].*value;

    // The newest record is later than time, so the loop ends there at the latest.
    int at = mRead;
    int next = (at + 1) % count;
    while (time > record[next].time) {
        at = next;
        next = (next + 1) % count;
    }
    const auto share =
        static_cast<float>((time - record[at].time) / (record[next].time - record[at].time));
    return record[at].*value + share * (record[next].*value - record[at].*value);
}

}  // namespace orvane
