#include "ImportManners.h"

#include "TestHome.h"
#include "XPPath.h"

#include <gtest/gtest.h>

TEST(ImportManners, KnowsABattery)
{
    struct Supply
    {
        const char *name;
        const char *type;
        const char *status;
        const char *online;
        const char *scope;
    };
    static constexpr Supply discharging = {"BAT0", "Battery", "Discharging", "", "System"};
    static constexpr Supply full = {"BAT0", "Battery", "Full", "", "System"};
    static constexpr Supply mouse = {"hid", "Battery", "Discharging", "", "Device"};
    static constexpr Supply mains = {"AC", "Mains", "", "1", ""};
    static constexpr Supply unplugged = {"AC", "Mains", "", "0", ""};
    const struct
    {
        const char *name = nullptr;
        std::vector<Supply> supplies;
        bool onBattery = false;
    } rows[] = {
        {"a desktop", {}, false},
        {"plugged in", {mains, full}, false},
        {"plugged in and still discharging", {mains, discharging}, false},
        {"unplugged", {unplugged, discharging}, true},
        {"a tablet", {discharging}, true},
        {"only a mouse", {mouse}, false},
    };
    for (const auto &row : rows) {
        const TestFolder folder;
        for (const Supply &supply : row.supplies) {
            const auto write = [&](const char *file, const QByteArray &text) {
                if (!text.isEmpty())
                    folder.file(QLatin1String(supply.name) + u'/' + QLatin1String(file),
                                text + '\n');
            };
            write("type", supply.type);
            write("status", supply.status);
            write("online", supply.online);
            write("scope", supply.scope);
        }
        EXPECT_EQ(ImportManners::isOnBattery(XPPath::encode(folder.path())), row.onBattery)
            << row.name;
    }
    EXPECT_FALSE(ImportManners::isOnBattery("/nowhere"));
}

TEST(ImportManners, CountsWhatOthersUse)
{
    const QByteArray start = "cpu  100 100 100 100 100 0 0 0 0 0";
    const auto share = [&](const QByteArray &now) {
        return ImportManners::othersShare(start, now);
    };
    EXPECT_EQ(share("cpu  150 100 150 100 100 0 0 0 0 0"), 1.0);
    EXPECT_EQ(share("cpu  100 200 100 100 100 0 0 0 0 0"), 0.0) << "the importer itself";
    EXPECT_EQ(share("cpu  150 100 100 150 100 0 0 0 0 0"), 0.5);
    EXPECT_EQ(share(start), std::nullopt);
    EXPECT_EQ(share("rubbish"), std::nullopt);
    EXPECT_EQ(share({}), std::nullopt);
}

TEST(ImportManners, PausesForOthers)
{
    bool battery = true;
    std::optional<double> share = 0.9;
    const auto reasonsAfterALook = [&] {
        ImportManners manners({[&] { return battery; }, [&] { return share; }});
        manners.look();
        return manners.pause().reasons();
    };
    EXPECT_EQ(reasonsAfterALook(), unsigned{ImportPause::Battery | ImportPause::Load});
    battery = false;
    EXPECT_EQ(reasonsAfterALook(), unsigned{ImportPause::Load});
    share = 0.3;
    EXPECT_EQ(reasonsAfterALook(), 0U);
    share.reset();
    EXPECT_EQ(reasonsAfterALook(), 0U);
}
