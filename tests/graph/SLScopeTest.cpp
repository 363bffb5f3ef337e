#include "graph/SLScope.h"

#include "core/Errors.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tidewell {

TEST(SLScope, ChannelNameCarriesTheLiveValue) {
    TSLScope scope;
    TSLDisplayChannel& channel = scope.Channels.Add();
    struct TStep {
        const char* Set; // nullptr: show the value on the name as it is
        double Value;
        const char* Expected;
    };
    const std::vector<TStep> steps{
        {"Temp", 21.5, "Temp:[21.50]"},
        {nullptr, -3, "Temp:[-3.00]"},
        {nullptr, 123456789, "Temp:[1.2345679E8]"},
        {"", 1, ":[1.00]"},
        {"A:[old]", 2, "A:[2.00]"},
        // More than 20 characters behind the mark: the rest stays in front of the value, and goes in turn.
        {"A:[0123456789012345678\u00b0rest", 2, "A:[rest2.00]"},
        {nullptr, 3, "A:[3.00]"},
    };
    for (const auto& step : steps) {
        if (step.Set != nullptr) {
            channel.SetName(step.Set);
            EXPECT_EQ(channel.Name(), step.Set);
        }
        channel.ShowValue(step.Value);
        EXPECT_EQ(channel.Name(), step.Expected);
    }
}

TEST(SLScope, ChannelNameCarriesBits) {
    TSLScope scope;
    TSLDisplayChannel& channel = scope.Channels.Add();
    for (const auto& [value, bits] :
         {std::pair{258.9, "00000001 00000010"},
          {-1, "11111111 11111111"},
          {65538, "00000000 00000010"}}) { // wider than a register: its low 16 bits
        channel.ShowBits("Flags", value);
        EXPECT_EQ(channel.Name(), std::string("Flags:[") + bits + "]");
    }
    channel.ShowValue(7); // the cursor shows a number on any channel
    EXPECT_EQ(channel.Name(), "Flags:[7.00]");
}

TEST(SLScope, TellsItsViewOnceUntilTheViewHasDrawn) {
    TSLScope scope;
    int told = 0;
    const auto connection = scope.Redraw.Changed.Connect([&told] { ++told; });
    TSLDisplayChannel& channel = scope.Channels.Add();
    for (int i = 0; i < 100; ++i)
        channel.Data.AddYPoint(i * 2);
    EXPECT_EQ(told, 1);
    scope.Redraw.Begin();
    channel.SetVisible(true);
    EXPECT_FALSE(scope.Redraw.IsPending());
    channel.SetVisible(false);
    scope.XAxis.Max.SetBoth(7);
    EXPECT_EQ(told, 2);
    std::vector<double> values(channel.Data.GetSize());
    channel.Data.GetDrawYData(values.data());
    EXPECT_EQ(values.back(), 198);
    EXPECT_EQ(channel.Data.Points()[99].X, 99);
    EXPECT_THROW(scope.Channels[1], EListError);
}

} // namespace tidewell
