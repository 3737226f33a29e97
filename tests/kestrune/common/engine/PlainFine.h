// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "kestrune/common/engine/KestruneGeometry.h"
#include "support/Standard.h"

#include <complex>

namespace orvane
{

/// The fine tracking in its plainest form, for comparison: in double precision, over the whole
/// sound kept from its start, with nothing thinned out or carried on from block to block. One
/// channel. Its steps are open, for comparison one by one.
struct PlainFine
{
    struct Record
    {
        double time = 0.0;
        double period = 0.0;
        double clarity = 0.0;
        bool isVoiced = false;
        double note = 0.0;
    };

    double correctionMs = 0.0;
    double pitchFactor = 1.0;
    double formantFactor = 1.0;

    PlainFine(double sampleRate, int blockSize, double lowHz, double highHz)
        : rate(sampleRate)
        , block(blockSize)
        , sizes(KestruneGeometry::For(static_cast<float>(sampleRate), blockSize))
    {
        while (rate / (2 * factor) >= 11025.0)
            factor *= 2;
        thin = std::max(1, factor / 4);
        const double coarseRate = rate / factor;
        span = sizes.maxPeriod / factor - 1 + 2;
        lagLow = std::max(2, static_cast<int>(coarseRate / (highHz * std::exp2(1.0 / 12))));
        lagHigh = std::min(static_cast<int>(std::ceil(coarseRate * std::exp2(0.25) / lowHz)),
                           sizes.maxPeriod / factor - 2);
        const double w = std::tan(std::numbers::pi * 0.5 * lowHz / coarseRate);
        const double n = 1.0 / (1.0 + std::numbers::sqrt2 * w + w * w);
        highPass[0] = n;
        highPass[1] = 2.0 * (w * w - 1.0) * n;
        highPass[2] = (1.0 - std::numbers::sqrt2 * w + w * w) * n;
        sound.resize(static_cast<std::size_t>(sizes.latency));
        horizon = sizes.firstStreamPos;
        mark = inputMark = sizes.firstMark;
        heldPeriod = rate / 220.0;
    }

    /// Takes in a block and returns what comes out.
    std::vector<double> Process(const float* in)
    {
        sound.insert(sound.end(), in, in + block);
        Thin();
        Analyse();
        out.resize(static_cast<std::size_t>(horizon + sizes.resampledCapacity));
        while (static_cast<double>(horizon) > mark)
            PlaceGrain();
        const auto first = out.begin() + (horizon - sizes.firstStreamPos);
        horizon += block;
        return {first, first + block};
    }

    std::vector<Record> records;  // one a block
    std::vector<double> path;     // periods of the best path, newest first; 0 for "unvoiced"

    static constexpr int kDepth = 14;
    struct Candidate
    {
        double period;
        double strength;
        double score = 0.0;
        int origin = 0;
    };

    [[nodiscard]] double At(long long position) const
    {
        return position < 0 ? 0.0 : sound[static_cast<std::size_t>(position)];
    }

    void Thin()
    {
        clarities.clear();
        const auto end = static_cast<long long>(sound.size());
        for (auto p = end - block; p < end; ++p) {
            if (p % thin == 0) {
                double sum = 0.0;
                for (int i = 0; i < factor; ++i)
                    for (int k = 0; k < factor; ++k)
                        sum += At(p - i - k);
                middle.resize(static_cast<std::size_t>(p / thin) + 1);
                middle.back() = sum / (factor * factor);
            }
            if (p % factor != 0)
                continue;
            double sum = 0.0;
            double weights = 0.0;
            for (int i = -8 * factor; i <= 8 * factor; ++i) {
                const double x = 2.0 * 0.26 / factor * i * std::numbers::pi;
                const double weight =
                    (i == 0 ? 1.0 : std::sin(x) / x) *
                    (0.5 + 0.5 * std::cos(std::numbers::pi * i / (8 * factor + 1)));
                sum += weight * At(p - 8 * factor + i);
                weights += weight;
            }
            const double x = sum / weights;
            const double y =
                highPass[0] * (x - 2.0 * x1 + x2) - highPass[1] * y1 - highPass[2] * y2;
            x2 = x1, x1 = x, y2 = y1, y1 = y;
            coarse.resize(static_cast<std::size_t>(p / factor) + 1);
            coarse.back() = y;
        }
    }

    /// Twice the product over the energies of the stretches at a and b.
    static double Alike(const std::vector<double>& x, long long a, long long b, int count)
    {
        double product = 0.0;
        double energy = 1e-12;
        for (int i = 0; i < count; ++i) {
            const double first = a + i < 0 ? 0.0 : x[static_cast<std::size_t>(a + i)];
            const double second = b + i < 0 ? 0.0 : x[static_cast<std::size_t>(b + i)];
            product += first * second;
            energy += first * first + second * second;
        }
        return 2.0 * product / energy;
    }

    /// Kept until the next block, since most lags are asked for several times.
    [[nodiscard]] double Coarse(int lag) const
    {
        const auto [known, isNew] = clarities.try_emplace(lag, 0.0);
        if (isNew) {
            const auto centre = static_cast<long long>(coarse.size()) - 1 - span;
            const int count = std::max(static_cast<int>(0.030 * rate / factor), lag);
            const long long a = centre - (lag + count) / 2;
            known->second = Alike(coarse, a, a + lag, count);
        }
        return known->second;
    }

    [[nodiscard]] double CoarseBetween(int lag, double offset) const
    {
        double sum = 0.0;
        double weights = 0.0;
        for (int i = -4; i <= 4; ++i) {
            const double x = std::numbers::pi * (i - offset) + 1e-12;
            const double weight = std::sin(x) / x * (0.5 + 0.5 * std::cos(x / 5.0));
            sum += weight * Coarse(lag + i);
            weights += weight;
        }
        return sum / weights;
    }

    static void Parabola(double left, double top, double right, double& offset, double& height)
    {
        const double bend = left - 2.0 * top + right;
        offset = bend < 0.0 ? std::clamp(0.5 * (left - right) / bend, -1.0, 1.0) : 0.0;
        height = std::min(1.0, top - 0.25 * (left - right) * offset);
    }

    [[nodiscard]] std::vector<Candidate> Candidates() const
    {
        std::vector<Candidate> found{{0.0, 0.45}};
        const auto centre = static_cast<long long>(coarse.size()) - 1 - span;
        const int count = static_cast<int>(0.030 * rate / factor);
        double power = 0.0;
        for (long long i = centre - count / 2; i < centre - count / 2 + count; ++i)
            power += i < 0 ? 0.0 : std::pow(coarse[static_cast<std::size_t>(i)], 2);
        const double gate =
            std::clamp((10.0 * std::log10(power / count + 1e-10) + 60.0) / 10.0, 0.0, 1.0);
        const auto stepOf = [](int lag) { return lag < 160 ? 1 : 2; };
        for (int left = lagLow - 1, lag = lagLow; gate > 0.0 && lag + stepOf(lag) <= lagHigh + 1;
             left = lag, lag += stepOf(lag))
        {
            const double value = Coarse(lag);
            if (value <= 0.25 || value <= Coarse(left) || value < Coarse(lag + stepOf(lag)))
                continue;
            int best = lag;
            for (const int near : {lag - 1, lag + 1})
                if (lag >= 160 && Coarse(near) > Coarse(best))
                    best = near;
            double offset = 0.0;
            double height = 0.0;
            Parabola(Coarse(best - 1), Coarse(best), Coarse(best + 1), offset, height);
            if (best > 4 && best < 40)
                height = std::clamp(CoarseBetween(best, offset), height, 1.0);
            found.push_back({(best + offset) * factor,
                             height * gate - 0.02 * std::log2((best + offset) / lagLow)});
        }
        std::sort(found.begin() + 1, found.end(),
                  [](const Candidate& a, const Candidate& b) { return a.strength > b.strength; });
        found.resize(std::min<std::size_t>(found.size(), 9));
        return found;
    }

    std::vector<double> Path()
    {
        std::vector<Candidate> next = Candidates();
        for (Candidate& candidate : next) {
            double best = -std::numeric_limits<double>::max();
            for (std::size_t i = 0; i < frames.back().size(); ++i) {
                const Candidate& before = frames.back()[i];
                const bool sameKind = (before.period > 0.0) == (candidate.period > 0.0);
                const double cost =
                    !sameKind ? 0.14
                    : before.period > 0.0
                        ? 0.35 * std::fabs(std::log2(before.period / candidate.period))
                        : 0.0;
                if (before.score - cost > best) {
                    best = before.score - cost;
                    candidate.origin = static_cast<int>(i);
                }
            }
            candidate.score = candidate.strength + best;
        }
        frames.push_back(next);
        std::size_t at = 0;
        for (std::size_t i = 1; i < next.size(); ++i)
            if (next[i].score > next[at].score)
                at = i;
        std::vector<double> periods(kDepth + 1, 0.0);
        for (std::size_t age = 0; age < periods.size() && age < frames.size(); ++age) {
            const Candidate& candidate = frames[frames.size() - 1 - age][at];
            periods[age] = candidate.period;
            at = static_cast<std::size_t>(candidate.origin);
        }
        return periods;
    }

    bool Peak(double time, double lag, int reach, double period, double& exact,
              double& height) const
    {
        const int count = std::max(static_cast<int>(0.012 * rate / thin), static_cast<int>(period));
        const auto centre = static_cast<int>(std::lround(lag));
        const auto start = static_cast<long long>(
            std::floor((time + factor - 1) / thin - (centre + count) / 2.0 + 0.5));
        const auto value = [&](int u) { return Alike(middle, start, start + u, count); };
        const int lowest = std::max(1, centre - reach);
        int best = lowest;
        int last = lowest;
        for (int u = lowest; u <= centre + reach; u += reach > 2 ? 2 : 1) {
            last = u;
            if (value(u) > value(best))
                best = u;
        }
        height = value(best);
        if (best == lowest || best == last)
            return false;
        best =
            std::max({best, best - 1, best + 1}, [&](int a, int b) { return value(a) < value(b); });
        double offset = 0.0;
        Parabola(value(best - 1), value(best), value(best + 1), offset, height);
        exact = best + offset;
        return true;
    }

    void Refine(Record& record, double period) const
    {
        record.period = heldPeriod;
        record.clarity = 0.0;
        if (period == 0.0)
            return;
        double lag = period / thin;
        record.period = period;
        if (!Peak(record.time, lag, 3 + static_cast<int>(0.04 * lag), lag, lag, record.clarity))
            return;
        for (int k = 2; k * lag <= 0.010 * rate / thin; k *= 2) {
            double exact = 0.0;
            double height = 0.0;
            if (!Peak(record.time, k * lag, 2, lag, exact, height) || height < record.clarity - 0.1)
                break;
            lag = exact / k;
        }
        record.period = lag * thin;
    }

    void Analyse()
    {
        path = Path();
        Record newest;
        newest.time = static_cast<double>(
            (static_cast<long long>(coarse.size()) - 1 - span) * factor - 8 * factor);
        newest.period = heldPeriod;
        records.push_back(newest);
        const auto back = [this](std::size_t age) -> Record& {
            return records[records.size() - 1 - age];
        };
        if (records.size() > kDepth - 3)
            Refine(back(kDepth - 3), path[kDepth - 3]);
        if (records.size() <= kDepth)
            return;
        Record& record = back(kDepth);
        const double onPath = path[kDepth];
        if (onPath > 0.0 &&
            (record.clarity == 0.0 || std::fabs(onPath - record.period) > 0.04 * record.period))
            Refine(record, onPath);
        record.isVoiced = onPath > 0.0 && record.clarity >= 0.4;
        if (onPath > 0.0 && records.size() > kDepth + 1 && back(kDepth + 1).isVoiced)
            for (std::size_t k = 1; k <= 3 && path[kDepth - k] > 0.0; ++k)
                record.isVoiced = record.isVoiced || back(kDepth - k).clarity >= 0.4;
        if (record.isVoiced)
            heldPeriod = record.period;
        record.period = heldPeriod;
        ChooseNote(record);
    }

    /// Among all semitones of A = 440 Hz: the cheapest course of notes, found by trying the origin.
    void ChooseNote(Record& record)
    {
        if (!record.isVoiced) {
            hasHeld = false;
            return;
        }
        std::vector<double> pitches{12.0 * std::log2(rate / record.period / 440.0)};
        for (int age = kDepth - 1; age >= 0 && path[static_cast<std::size_t>(age)] > 0.0; --age)
            pitches.push_back(12.0 * std::log2(rate / path[static_cast<std::size_t>(age)] / 440.0));
        constexpr int kLowest = -60;
        constexpr int kNotes = 90;
        std::vector<double> cost(kNotes);
        std::vector<int> origin(kNotes);
        for (int i = 0; i < kNotes; ++i) {
            origin[static_cast<std::size_t>(i)] = kLowest + i;
            cost[static_cast<std::size_t>(i)] = !hasHeld || held == kLowest + i ? 0.0 : 2.0;
        }
        for (std::size_t s = 0; s < pitches.size(); ++s) {
            const auto least = std::min_element(cost.begin(), cost.end()) - cost.begin();
            const double leastCost = cost[static_cast<std::size_t>(least)];
            const int leastOrigin = origin[static_cast<std::size_t>(least)];
            for (std::size_t i = 0; i < cost.size(); ++i) {
                if (s > 0 && cost[i] > leastCost + 2.0) {
                    cost[i] = leastCost + 2.0;
                    origin[i] = leastOrigin;
                }
                cost[i] += std::min(std::fabs(kLowest + static_cast<double>(i) - pitches[s]), 2.0);
            }
        }
        held = origin[static_cast<std::size_t>(std::min_element(cost.begin(), cost.end()) -
                                               cost.begin())];
        hasHeld = true;
        record.note = held + 12.0 * std::log2(440.0);
    }

    template <typename Value>
    [[nodiscard]] double Interpolated(double time, const Value& value) const
    {
        if (time <= records.front().time)
            return value(records.front());
        for (std::size_t i = 1; i < records.size(); ++i)
            if (time <= records[i].time) {
                const double share =
                    (time - records[i - 1].time) / (records[i].time - records[i - 1].time);
                return value(records[i - 1]) + share * (value(records[i]) - value(records[i - 1]));
            }
        return value(records.back());
    }
    [[nodiscard]] double PeriodAt(double time) const
    {
        return Interpolated(time, [](const Record& record) { return record.period; });
    }
    [[nodiscard]] double CycleAt(double time) const
    {
        return PeriodAt(time + PeriodAt(time) / 2.0);
    }

    static double Window(double u)
    {
        return (1.0 + 1.125 * std::cos(std::numbers::pi * u) -
                0.125 * std::cos(3.0 * std::numbers::pi * u)) /
               2.0;
    }

    void Grain(double left, double right, double formants)
    {
        const auto first = static_cast<long long>(std::ceil(mark - left / formants));
        const auto last = static_cast<long long>(std::floor(mark + right / formants));
        for (long long k = first; k <= last; ++k) {
            const double x = (static_cast<double>(k) - mark) * formants;
            const double position = inputMark + x;
            const auto whole = static_cast<long long>(std::floor(position));
            const double t = position - static_cast<double>(whole);
            const double slope = 0.5 * (At(whole + 1) - At(whole - 1));
            const double nextSlope = 0.5 * (At(whole + 2) - At(whole));
            const double rise = At(whole + 1) - At(whole);
            const double value =
                At(whole) + t * (slope + t * (3.0 * rise - 2.0 * slope - nextSlope +
                                              t * (slope + nextSlope - 2.0 * rise)));
            out[static_cast<std::size_t>(k)] += value * Window(x < 0.0 ? x / left : x / right);
        }
    }

    void DryGrain(double length)
    {
        inputMark = mark;
        ratio = 1.0;
        Grain(std::min(step, static_cast<double>(sizes.maxPeriod)), length, 1.0);
        step = length;
        mark += length;
    }

    [[nodiscard]] double WaitForPulse() const
    {
        const double period = PeriodAt(mark + 2.0 * PeriodAt(mark));
        std::complex<double> sum;
        const auto first = static_cast<long long>(std::ceil(mark + period));
        for (long long t = first; t < first + static_cast<int>(2.0 * period); ++t)
            sum +=
                std::pow(At(t) - At(t - 1), 2) *
                std::polar(1.0, 2.0 * std::numbers::pi * (static_cast<double>(t) - mark) / period);
        const double cycles = std::arg(sum) / (2.0 * std::numbers::pi) + 0.05;
        return (cycles - std::floor(cycles)) * period;
    }

    void PlaceGrain()
    {
        const bool isVoiced = Interpolated(mark, [](const Record& record) {
                                  return record.isVoiced ? 1.0 : 0.0;
                              }) >= 0.5;
        if (!isVoiced) {
            sounds = aligned = false;
            return DryGrain(0.004 * rate);
        }
        if (!sounds && !aligned) {
            aligned = true;
            if (const double wait = WaitForPulse(); wait >= 1.0)
                return DryGrain(wait);
        }
        const bool isFirst = !sounds;
        sounds = true;
        aligned = false;
        if (isFirst) {
            inputMark = mark;
            rightFlank = std::min(step, static_cast<double>(sizes.maxPeriod));
        }
        double period = CycleAt(inputMark);
        while (std::fabs(inputMark + period - mark) < std::fabs(inputMark - mark)) {
            inputMark += period;
            period = CycleAt(inputMark);
        }
        Correct(period, isFirst);
        Grain(rightFlank, period, formantFactor);
        rightFlank = period;
        step = period / (ratio * pitchFactor);
        mark += step;
    }

    void Correct(double period, bool isFirst)
    {
        const auto settled = static_cast<long long>(records.size()) - 1 - kDepth;
        long long nearest = settled;
        for (long long i = settled; i >= 0; --i)
            if (std::fabs(records[static_cast<std::size_t>(i)].time - inputMark) <
                std::fabs(records[static_cast<std::size_t>(nearest)].time - inputMark))
                nearest = i;
        const auto voicedAt = [&](long long i) {
            return i >= 0 && i <= settled && records[static_cast<std::size_t>(i)].isVoiced;
        };
        if (!voicedAt(nearest))
            nearest = voicedAt(nearest + 1) ? nearest + 1 : nearest - 1;
        const auto pitchOf = [this](double p) { return 12.0 * std::log2(rate / p); };
        double pitch = pitchOf(period);
        const double note = records[static_cast<std::size_t>(nearest)].note;
        if (isFirst && correctionMs > 0.0) {
            double sum = 0.0;
            int count = 0;
            for (long long i = nearest; voicedAt(i); ++i, ++count) {
                if (records[static_cast<std::size_t>(i)].note != note)
                    break;
                sum += pitchOf(records[static_cast<std::size_t>(i)].period);
            }
            pitch = sum / count;
        }
        const double wanted = std::exp2((note - pitch) / 12.0);
        const double kept = correctionMs > 0.0 && !isFirst
                                ? std::pow(0.25, block / (rate * correctionMs / 1000.0))
                                : 0.0;
        ratio = (1.0 - kept) * wanted + kept * ratio;
    }

    double rate;
    int block;
    KestruneGeometry sizes;
    int factor = 1;
    int thin = 1;
    int span = 0;
    int lagLow = 0;
    int lagHigh = 0;
    double highPass[3] = {};
    double x1 = 0.0, x2 = 0.0, y1 = 0.0, y2 = 0.0;
    std::vector<double> sound;  // by stream position, as all three
    std::vector<double> coarse;
    mutable std::map<int, double> clarities;  // by lag, of the newest block
    std::vector<double> middle;
    std::vector<double> out;
    std::vector<std::vector<Candidate>> frames{{{0.0, 0.0}}};
    double heldPeriod = 0.0;
    bool hasHeld = false;
    int held = 0;
    long long horizon = 0;
    double mark = 0.0;
    double inputMark = 0.0;
    double step = 0.0;
    double rightFlank = 0.0;
    double ratio = 1.0;
    bool sounds = false;
    bool aligned = false;
};

}  // namespace orvane
