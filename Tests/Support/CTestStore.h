#pragma once

#include "Core/CAppData.h"
#include "Core/CWriteSeqBuffer.h"
#include "Tests/Support/CScratchFolder.h"

#include <string>
#include <vector>

namespace tsm {

/// A store with all its folders in a scratch folder. Several stand for several processes.
class CTestStore : public CAppData {
public:
    static constexpr CPlaces kPlaces{.subFolder = "sub/",
                                     .moduleSubFolder = "mod/",
                                     .resourcePrefix = "Prefix_",
                                     .altSubFolder = "alt/"};

    explicit CTestStore(const std::filesystem::path& baseFolder)
        : CAppData(kPlaces), base(baseFolder)
    {
    }

protected:
    CBaseFolders findBaseFolders() const override
    {
        if (base.empty())
            return {};
        const auto folder = [&](const char* name) {
            return CString::fromUtf8((base / name).string());
        };
        return {folder("user"), folder("common"), folder("module/")};
    }

private:
    std::filesystem::path base;
};

inline CByteBuffer toBuffer(const std::string& bytes)
{
    return {bytes.data(), static_cast<int>(bytes.size())};
}

inline std::string toText(const CByteBuffer& buffer)
{
    return {buffer.data(), buffer.data() + buffer.getSize()};
}

/// The bytes of a stored item's file.
inline std::string itemFile(const std::string& content, std::uint32_t id = kRawDataId)
{
    CWriteSeqBuffer stream;
    EXPECT_EQ(stream.writeCompressedData(content.data(), static_cast<int>(content.size()), id),
              nullptr);
    CByteBuffer bytes;
    stream.takeData(bytes);
    return toText(bytes);
}

inline std::string readItem(CAppData& store, const CString& key, bool force = false,
                            std::uint32_t id = kRawDataId)
{
    CByteBuffer buffer;
    buffer.resize(3); // what was in it must not stay
    store.readData(key, buffer, id, force);
    return toText(buffer);
}

inline bool writeItem(CAppData& store, const CString& key, const std::string& content,
                      const void* sender = nullptr)
{
    return store.writeData(key, toBuffer(content), sender, kRawDataId);
}

/// Notes who wrote its item.
class CItemListener : public CAppDataListener<CItemListener> {
public:
    CItemListener(CAppData& store, const CString& key) : CAppDataListener(this)
    {
        attach(&store, key);
    }
    ~CItemListener() override { detach(); }
    void onUpdate(const CUpdateMessage& message) override { senders.push_back(message.sender); }
    std::vector<const void*> senders;
};

} // namespace tsm
