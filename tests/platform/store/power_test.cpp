// Endurance: power cuts and failing writes at any moment. GADGET_STORE_LONG=1 plays the long form, 1,000 of each:
//   GADGET_STORE_LONG=1 build/dev/tests/store-test --gtest_filter='Power.*:Processes.AKilled*'
#include <map>
#include <random>

#include "power_vfs.h"
#include "store_fixture.h"

namespace {

class Power : public StoreTest {
  protected:
    void SetUp() override {
        StoreTest::SetUp();
        power::install();
    }
};

// A value that tells a torn one: its number all over, in many lengths.
std::string valueOf(unsigned number, std::size_t size) {
    std::string text;
    while (text.size() < size)
        text += std::to_string(number) + ' ';
    return text;
}

TEST_F(Power, ACutLosesNothingThatWasStoredAndTearsNothing) {
    const int cuts = std::getenv("GADGET_STORE_LONG") ? 1000 : 100;
    std::mt19937 random(20261123);
    std::map<std::string, std::optional<std::string>> stored;
    unsigned number = 0;
    int inFlight = 0;
    for (int cut = 0; cut < cuts; ++cut) {
        power::failAt(static_cast<int>(1 + random() % 120), power::Fault::Cut);
        std::string message, key, text;
        if (store::open(file_, message)) {
            do {
                key = "key" + std::to_string(random() % 8);
                text = valueOf(++number, random() % 16 == 0 ? 300'000 : random() % 9000);
            } while (vconf_set_str(key.c_str(), text.c_str()) == 0 && (stored[key] = text, true));
        }
        ASSERT_TRUE(power::hasFailed()) << message;
        store::close();
        power::restore(random);
        open();
        for (auto& [name, value] : stored) {
            const auto found = textUnder(name.c_str());
            ASSERT_TRUE(found == value || (name == key && found == text)) << name << " after cut " << cut;
        }
        if (!key.empty()) stored[key] = textUnder(key.c_str());
        inFlight += !key.empty();
        ASSERT_TRUE(setAside().empty());
        store::close();
    }
    EXPECT_GT(inFlight, cuts / 2);
}

TEST_F(Power, TheNthFailureIsAnsweredAndKeepsTheOldValue) {
    for (const power::Fault fault : {power::Fault::Error, power::Fault::Full}) {
        for (const std::size_t size : {10U, 1'500'000U}) {  // the large one moves the log into the database
            int refused = 0;
            for (int n = 1;; ++n) {
                power::failAt(0, power::Fault::None);
                open();
                ASSERT_EQ(vconf_set_str("key", "old"), 0);
                const std::string text = valueOf(7, size);
                power::failAt(n, fault);
                const int answer = vconf_set_str("key", text.c_str());
                const bool failed = power::hasFailed();
                power::failAt(0, power::Fault::None);
                ASSERT_EQ(textUnder("key"), answer == 0 ? text : "old") << n;
                open();
                ASSERT_EQ(textUnder("key"), answer == 0 ? text : "old") << n;
                refused += answer == -1;
                if (!failed) break;
                if (size > 10) n += n > 4 ? 499 : 0;  // thousands of alike writes
            }
            EXPECT_GE(refused, 2);
            EXPECT_TRUE(setAside().empty());
        }
    }
}

}  // namespace
