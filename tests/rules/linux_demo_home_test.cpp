// The demo's Linux home, on which all rules are tried at once.

#include <set>
#include <stdexcept>

#include "demo_home/demo_home.h"
#include "rules/catalogue.h"
#include "rules/rule_test.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;

class LinuxDemoHome : public TemporaryHome {
protected:
    LinuxDemoHome() {
        stopClock(now());
        requireSpace(testRoot(), roomForDemoHome);
        const std::optional<World> made = makeDemoHome(testRoot() / "Linux", Layout::linuxDesktop);
        if (!made) {
            throw std::runtime_error("the demo's home cannot be made");
        }
        setWorld(*made);
    }

    static RuleResult scan() {
        RuleResult all;
        for (const Spec& spec : Scanner::specs()) {
            Probe probe(std::make_shared<Tracker>());
            for (Card& card : spec.run(probe)) {
                all.cards.push_back(std::move(card));
            }
            all.blocked = all.blocked || probe.blocked;
        }
        return all;
    }

    static std::vector<std::string> namesOf(const Card* card) {
        std::vector<std::string> names;
        for (const Entry& entry : card == nullptr ? std::vector<Entry>() : card->entries) {
            names.push_back(entry.name);
        }
        return names;
    }
};

TEST_F(LinuxDemoHome, ShowsEveryCardThatLinuxCan) {
    const RuleResult all = scan();
    EXPECT_THAT(idsOf(all), ElementsAre("caches", "crash", "ai", "brew", "pkg", "proj-node", "proj-next", "proj-venv",
                                        "proj-cargo", "vms", "orphans", "downloads"));
    EXPECT_FALSE(all.blocked);
}

TEST_F(LinuxDemoHome, HoldsWhatIsLeftAloneToo) {
    const RuleResult all = scan();
    EXPECT_THAT(namesOf(all.card("caches")),
                ElementsAre("mozilla", "Chromium", "go-build", "Lumen Photos", "thumbnails", "Lumen Photos"));
    EXPECT_EQ(namesOf(all.card("crash")).size(), 4U);
    EXPECT_THAT(namesOf(all.card("ai")),
                ElementsAre("Ollama models", "Hugging Face models", "LM Studio models", "PyTorch models"));
    EXPECT_THAT(namesOf(all.card("orphans")),
                ElementsAre("org.saltmarsh.Islands", "paperfold", "org.quillpad.Quillpad"));
    EXPECT_THAT(namesOf(all.card("downloads")),
                ElementsAre("Paperfold Studio 3.deb", "coast-walk-photos.zip", "Old Flat"));
}

TEST_F(LinuxDemoHome, OffersNoPlaceTwice) {
    std::set<std::filesystem::path> places;
    for (const Card& card : scan().cards) {
        for (const Entry& entry : card.entries) {
            EXPECT_TRUE(places.insert(entry.url).second) << entry.url;
        }
    }
    for (auto inner = places.begin(); inner != places.end(); ++inner) {
        for (auto outer = places.begin(); outer != inner; ++outer) {
            EXPECT_FALSE(inner->string().starts_with(outer->string() + "/")) << *inner;
        }
    }
}

}  // namespace
}  // namespace vesk
