// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/signals/ZBay.h"

#include "support/ProbeBay.h"
#include "support/Test.h"

using namespace orvane;

namespace
{

/// A chain of bays, each reading the one before.
std::vector<boost::shared_ptr<ProbeBay>> chainOf(std::int32_t count)
{
    std::vector<boost::shared_ptr<ProbeBay>> bays;
    for (std::int32_t i = 0; i < count; ++i) {
        bays.push_back(probe("bay" + std::to_string(i)));
        if (i > 0)
            bays[static_cast<std::size_t>(i)]->Route(0, *bays[static_cast<std::size_t>(i) - 1], 0);
    }
    return bays;
}

}  // namespace

TEST(ZBayTest, RefusesImpossibleRoutes)
{
    const auto a = probe("a");
    const auto b = probe("b");
    EXPECT_EQ(failureOf([&] { a->Route(1, *b, 0); }), "Bay 'a' has no import 1, but 1 of them.");
    EXPECT_EQ(failureOf([&] { a->Route(0, *b, -1); }), "Bay 'b' has no export -1, but 1 of them.");
    EXPECT_EQ(failureOf([&] { a->Route(0, *a, 0); }), "The route from 'a' to 'a' closes a cycle.");
    b->Route(0, *a, 0);
    EXPECT_EQ(failureOf([&] { a->Route(0, *b, 0); }), "The route from 'b' to 'a' closes a cycle.");
    EXPECT_EQ(b->GetRouteCount(), 0);
    EXPECT_TRUE(a->GetImport(0)->GetRoutes().empty());

    const auto top = boost::make_shared<ZSignalBay>("top");
    const auto below = boost::make_shared<ZSignalBay>("below");
    top->AddBay(below);
    EXPECT_NE(failureOf([&] { below->AddBay(top); }), "none");
}

TEST(ZBayTest, RoutesAndChainsAreBounded)
{
    std::vector<boost::shared_ptr<ProbeBay>> others;
    const auto target = probe("target");
    for (std::int32_t i = 0; i < ZPort::kMaxRoutes; ++i) {
        others.push_back(probe("source", 0));
        target->Route(0, *others.back(), 0);
    }
    const auto late = probe("late");
    EXPECT_EQ(failureOf([&] { target->Route(0, *late, 0); }),
              "The route from 'late' to 'target' is one more than the 512 of a port.");
    EXPECT_TRUE(late->GetExport(0)->GetRoutes().empty());

    const auto source = probe("source", 0, 2);
    for (std::int32_t i = 0; i < ZSignalBay::kMaxRequesters; ++i) {
        others.push_back(probe("target"));
        others.back()->Route(0, *source, i % 2);
    }
    EXPECT_EQ(
        failureOf([&] { late->Route(0, *source, 0); }),
        "The route from 'source' to 'late' is one more than the 64 imports that a bay feeds.");
    auto upper = chainOf(200);
    auto lower = chainOf(56);
    lower.front()->Route(0, *upper.back(), 0);
    EXPECT_NE(failureOf([&] { late->Route(0, *lower.back(), 0); }).find("256 bays"),
              std::string::npos);
    EXPECT_NE(failureOf([&] { upper.front()->Route(0, *late, 0); }).find("256 bays"),
              std::string::npos);
    late->Route(0, *lower[54], 0);
}

TEST(ZBayTest, RemovingAMiddleBayJoinsItsNeighbours)
{
    ZSignalBay network("network");
    const auto chain = chainOf(3);
    for (const auto& bay : chain)
        network.AddBay(bay);
    network.AddExport(chain[1]->ShareExport(0));
    network.RemoveBay(chain[1]);
    EXPECT_TRUE(chain[2]->IsRouted(0, *chain[0], 0));
    EXPECT_TRUE(chain[1]->GetImport(0)->GetRoutes().empty());
    EXPECT_EQ(network.GetExportCount(), 0) << "what has left is still published";

    const auto mixed = probe("mixed");
    mixed->RemoveImport(0);
    mixed->AddImport(boost::make_shared<ZSignalPort>("in", ZPort::kControl));
    network.AddBay(mixed);
    chain[2]->Unroute(0, *chain[0], 0);
    mixed->Route(0, *chain[0], 0);
    chain[2]->Route(0, *mixed, 0);
    network.RemoveBay(mixed);
    EXPECT_TRUE(chain[2]->GetImport(0)->GetRoutes().empty());
    EXPECT_EQ(chain[0]->GetRouteCount(), 0);
}

TEST(ZBayTest, DestroyedBayLeavesNoPortsAndRoutesBehind)
{
    const auto source = probe("source");
    const auto sink = probe("sink");
    {
        ZSignalBay outer("outer");
        const auto inner = boost::make_shared<ZSignalBay>("inner");
        const auto leaf = probe("leaf");
        outer.AddBay(inner);
        inner->AddBay(leaf);
        inner->AddImport(leaf->ShareImport(0));
        inner->AddExport(leaf->ShareExport(0));
        outer.AddImport(inner->ShareImport(0));
        outer.Route(0, *source, 0);
        sink->Route(0, *inner, 0);
        leaf->RemoveExport(0);
        EXPECT_EQ(inner->GetExportCount(), 0);
        EXPECT_TRUE(sink->GetImport(0)->GetRoutes().empty());
    }
    EXPECT_TRUE(source->GetExport(0)->GetRoutes().empty());
}
