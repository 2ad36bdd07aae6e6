#include "Tests/Support/CInterfaceRig.h"
#include "Tests/Support/CParamTree.h"

#include <cmath>
#include <optional>

namespace tsm::test {
namespace {

constexpr std::uint32_t kUndo = 1 << 16 | 77;

/// Messages written byte by byte, and what becomes of them when they are damaged.
class ADamagedMessage : public AnInterface {
protected:
    struct CMessage {
        std::string name;
        CBytes bytes;
    };

    void SetUp() override
    {
        AnInterface::SetUp();
        window = std::make_unique<CTestClient>(instance->getRoot());
        gain = window->listen("modReelpath.recgain", ofGain.emplace(*window->client));
        names = window->listen("io-params.group-names", ofNames.emplace(*window->client));
        programs = window->listen("plugin.param-registry", ofPrograms);
        ASSERT_OK(window->tick());
    }
    void TearDown() override
    {
        window.reset();
        AnInterface::TearDown();
    }

    static CMessage message(const char* name, const CByteList& fields)
    {
        CByteList all;
        all.text(name);
        all.bytes.insert(all.bytes.end(), fields.bytes.begin(), fields.bytes.end());
        return {name, all.bytes};
    }
    /// Place and shape of a change of group 0; single group, single element as told.
    static CByteList changeHead(std::uint32_t count, std::uint32_t type,
                                std::uint32_t isSingleGroup)
    {
        CByteList list;
        return list.u32(0).u32(0).u32(count).u32(0).u32(1).u32(type).u32(isSingleGroup).u32(0);
    }
    static CByteList& append(CByteList& list, const CByteList& more)
    {
        list.bytes.insert(list.bytes.end(), more.bytes.begin(), more.bytes.end());
        return list;
    }
    CByteList gainChange(std::uint32_t undoId) const
    {
        CByteList list;
        append(list.u32(gain).u32(undoId), changeHead(1, 0, 0));
        return list.f64(0x4000000000000000); // 2.0
    }
    CByteList textChange() const
    {
        CByteList list;
        append(list.u32(names).u32(0), changeHead(2, 1, 1));
        return list.u32(1).u32(2).u32(2).u32(1).u32(1).text("One").u32(2).u32(1).text("Two");
    }
    CByteList presetFields(std::uint32_t group) const
    {
        CByteList list;
        list.u32(programs).u32(group);
        const CBytes preset = written([&](COutputStream& out) {
            EXPECT_OK(instance->getParamRegistry().acquirePreset(true, 1, -1, out));
        });
        list.bytes.insert(list.bytes.end(), preset.begin(), preset.end());
        return list;
    }
    CByteList defaultPreset() const
    {
        CByteList list = presetFields(0);
        list.bytes.erase(list.bytes.begin() + 4, list.bytes.begin() + 8);
        return list;
    }
    /// One of each, all of them good, in an order in which they can be sent.
    std::vector<CMessage> messages() const
    {
        const std::uint32_t all = 0xFFFFFFFF;
        return {
            message("create-undo-data", CByteList().u32(kUndo).text("Edit").u32(1).u32(all)),
            message("change-param", gainChange(kUndo)),
            message("change-param", textChange()),
            message("reset-param", CByteList().u32(gain).u32(0).u32(0).u32(kUndo).u32(0)),
            message("submit-undo-data", CByteList().u32(kUndo).text("Other")),
            message("remove-undo-data", CByteList().u32(kUndo)),
            message("request-undo-history", CByteList().u32(1)),
            message("set-undo-history-pos", CByteList().u32(0)),
            message("listen-param",
                    CByteList().text("plugin.modMain.bypass-enable").u32(1 << 16 | 9)),
            message("unlisten-param", CByteList().u32(1 << 16 | 9)),
            message("listen-registry",
                    CByteList().text("plugin.param-registry-io").u32(1 << 16 | 9)),
            message("unlisten-registry", CByteList().u32(1 << 16 | 9)),
            message("set-current-program", CByteList().u32(programs).u32(2)),
            message("rename-preset", CByteList().u32(programs).u32(2).text("Mine")),
            message("activate-factory-preset", CByteList().u32(programs).u32(3)),
            message("activate-preset", presetFields(all)),
            message("request-preset", CByteList().u32(programs).u32(5).u32(1).u32(0).u32(all)),
            message("request-bank", CByteList().u32(programs).u32(6).u32(0)),
            message("set-default-preset", defaultPreset()),
            message("activate-default-preset", CByteList().u32(programs)),
            message("exchange-shadow-preset", CByteList().u32(programs)),
            message("update-shadow-preset", CByteList().u32(programs)),
            message("listen-viz",
                    CByteList().u32(1 << 16 | 9).text("plugin.modMain.modMeterOut").u32(all)),
            message("unlisten-viz", CByteList().u32(1 << 16 | 9)),
            message("request-viz-data", CByteList().u32(1).f64(0x403E000000000000)), // 30.0
            message("request-export-slot-names", CByteList().u32(1)),
            message("request-internal-channel-count", CByteList().u32(1)),
            message("request-group-count", CByteList().u32(1)),
            message("request-io-channel-counts", CByteList().u32(1)),
            message("request-sample-rate", CByteList().u32(1)),
            message("import-channel-labels", CByteList()),
        };
    }
    /// Whether sound still passes as it should.
    bool passesSound()
    {
        const CChannel in(600, 0.25);
        CChannel left = in;
        CChannel right = in;
        const void* inputs[] = {in.data(), in.data()};
        void* outputs[] = {left.data(), right.data()};
        instance->startProcessing();
        instance->processBlock(inputs, outputs, 600);
        instance->stopProcessing();
        return std::all_of(left.begin(), left.end(), [](double x) { return std::isfinite(x); });
    }
    std::vector<CBytes> takeBlocks()
    {
        CInterfaceBlockList blocks;
        connector->takeBlocks(1, blocks);
        std::vector<CBytes> taken;
        while (const CPtr<CInterfaceBlock> block = blocks.takeFirst())
            taken.push_back(toBytes(block->bytes));
        return taken;
    }

    std::unique_ptr<CTestClient> window;
    std::optional<CRecordingParam> ofGain;
    std::optional<CRecordingParam> ofNames;
    CRecordingRegistry ofPrograms;
    std::uint32_t gain = 0;
    std::uint32_t names = 0;
    std::uint32_t programs = 0;
};

TEST_F(ADamagedMessage, ChangesNothingWhereverItIsCut)
{
    for (const CMessage& message : messages()) {
        SCOPED_TRACE(message.name);
        const CBytes before = state();
        const std::vector<std::string> steps = history();
        for (std::size_t size = 0; size < message.bytes.size(); ++size)
            ASSERT_NE(takeMessage(process(
                          CBytes(message.bytes.begin(),
                                 message.bytes.begin() + static_cast<std::ptrdiff_t>(size)))),
                      "")
                << size;
        EXPECT_EQ(state(), before);
        EXPECT_EQ(history(), steps);
        EXPECT_OK(process(message.bytes));
    }
    EXPECT_TRUE(passesSound());
}

TEST_F(ADamagedMessage, HarmsNothingWhateverItsBytes)
{
    std::uint64_t random = 1;
    const auto next = [&random] {
        random = random * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(random >> 33);
    };
    const std::vector<CMessage> good = messages();
    for (const CMessage& message : good) {
        // Names that are none teach nothing: only what stands behind them is damaged.
        const std::size_t head = 4 + message.name.size();
        for (int i = 0; i < 400 && message.bytes.size() > head; ++i) {
            CBytes bytes = message.bytes;
            for (std::uint32_t n = next() % 3; n < 3; ++n) {
                const std::size_t at = head + next() % (bytes.size() - head);
                constexpr std::uint8_t kEdges[] = {0, 1, 0x7F, 0x80, 0xFF};
                bytes[at] = next() % 2 ? kEdges[next() % 5] : static_cast<std::uint8_t>(next());
            }
            handleError(process(bytes));
            if (i % 50 == 0)
                handleError(window->tick());
        }
    }
    EXPECT_TRUE(passesSound());
    // A new window finds all well.
    window = std::make_unique<CTestClient>(instance->getRoot());
    programs = window->listen("plugin.param-registry", ofPrograms);
    ASSERT_OK(process(message("activate-preset", presetFields(0xFFFFFFFF)).bytes));
    EXPECT_EQ(param("preset-name").text(0, 0).toUtf8(), "Drum Saturator");
    EXPECT_TRUE(passesSound());
}

TEST_F(ADamagedMessage, SaysWhatIsWrong)
{
    CByteList many;
    append(many.u32(gain).u32(0), changeHead(0x7FFFFFFF, 0, 0));
    CByteList type;
    append(type.u32(gain).u32(0), changeHead(1, 3, 0));
    CByteList far;
    far.u32(gain).u32(0).u32(0).u32(60000).u32(1).u32(0).u32(1).u32(0).u32(0).u32(0).f64(0);
    CByteList group;
    group.u32(gain).u32(0).u32(32).u32(0).u32(1).u32(0).u32(1).u32(0).u32(0).u32(0).f64(0);
    struct CRow {
        CMessage message;
        const char* error;
    };
    const CBytes before = state();
    for (const CRow& row :
         {CRow{message("change-param", many), "Invalid elements specified (2147483647 from 0)."},
          CRow{message("change-param", type), "Unknown data type 3 encountered"},
          CRow{message("change-param", far), "Invalid element 60000 specified."},
          CRow{message("change-param", group), "Invalid group 32 specified."},
          CRow{message("reset-param", CByteList().u32(gain).u32(0).u32(0xFFFFFFF0).u32(0).u32(0)),
               "Invalid element -16 specified."},
          CRow{message("no-message", CByteList()), "Unknown event 'no-message'."}}) {
        SCOPED_TRACE(row.error);
        EXPECT_FAILS_WITH(process(row.message.bytes), row.error);
    }
    EXPECT_EQ(state(), before);
}

TEST_F(ADamagedMessage, BelievesNoCountThatItsBytesDoNotHold)
{
    // A table of texts and a preset that claim four billion entries.
    CByteList texts;
    append(texts.u32(names).u32(0), changeHead(1, 1, 1)).u32(1).u32(0xFFFFFFFF);
    CByteList preset;
    preset.u32(programs).u32(0xFFFFFFFF).text("gplu:x").u32(0xFFFFFFFF).text("k").u32(0x0FFFFFFF);
    CByteList numbers;
    append(numbers.u32(gain).u32(0), changeHead(65536, 0, 0));
    for (const CMessage& row : {message("change-param", texts), message("activate-preset", preset),
                                message("change-param", numbers)}) {
        SCOPED_TRACE(row.name);
        EXPECT_THAT(takeMessage(process(row.bytes)),
                    testing::StartsWith("Premature end of memory resource while reading"));
    }
}

TEST_F(ADamagedMessage, FromTheBaseHarmsNoClient)
{
    ofPrograms.takeNotes();
    param("modReelpath.recgain").reset(kAllParamGroups, -1);
    param("modReelpath.recgain").setValue(0, 0, 2.0);
    param("io-params.group-names").setText(0, 0, "Front");
    ASSERT_OK((*window)->requestUndoHistory());
    ASSERT_OK((*window)->requestPreset(programs, 1, true, 0, -1));
    ASSERT_OK((*window)->requestBank(programs, 2, true));
    ASSERT_OK((*window)->requestGroupCount());
    ASSERT_OK((*window)->requestInternalChannelCount());
    ASSERT_OK((*window)->requestIoChannelCounts());
    ASSERT_OK((*window)->requestSampleRate());
    ASSERT_OK((*window)->setCurrentProgram(programs, 1));
    const std::vector<CBytes> good = takeBlocks();
    ASSERT_GT(good.size(), 12U);
    for (const CBytes& bytes : good) {
        SCOPED_TRACE(std::string(bytes.begin() + 4, bytes.begin() + 4 + bytes[0]));
        // A bank is long: every byte of its beginning, then some.
        for (std::size_t size = 1; size < bytes.size(); size += size < 400 ? 1 : 97) {
            sendBytes(1, CBytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)));
            ASSERT_NE(takeMessage(window->tick()), "") << size;
        }
        sendBytes(1, bytes);
        EXPECT_OK(window->tick());
    }
    EXPECT_EQ(ofNames->text(0), param("io-params.group-names").text(0, 0).toUtf8());
}

} // namespace
} // namespace tsm::test
