#include "Core/CPtr.h"
#include "Core/CWriteSeqBuffer.h"
#include "Other/CFileSet.h"
#include "Tools/Support/CToolFile.h"
#include "Tools/impulse/CImpulseDesign.h"
#include "Tools/impulse/CImpulseFile.h"
#include "Tools/impulse/CImpulseReader.h"
#include "Tools/impulse/CResponseTable.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace {

using namespace tsm;

struct COptions {
    std::filesystem::path description;
    std::filesystem::path output;
    std::filesystem::path responses;
};

bool makeSet(const std::vector<CImpulseSpec>& impulses, CFileSet& set, CResponseTable& table,
             std::string& error)
{
    for (const CImpulseSpec& spec : impulses) {
        CImpulseDesign design;
        std::string bytes;
        if (!design.make(spec, error) ||
            !CImpulseFile::make(spec, design.getSamples(), bytes, error))
            return false;
        set.add(spec.id, CString::fromUtf8(spec.name),
                CByteBuffer(bytes.data(), static_cast<int>(bytes.size())));
        table.add(spec, design.getSamples());
    }
    return true;
}

bool writeSet(const CFileSet& set, const std::filesystem::path& path, std::string& error)
{
    CWriteSeqBuffer stream;
    CByteBuffer data;
    if (const CPtr<CError> failure(set.writeTo(stream)); failure) {
        error = failure->getMessage().toUtf8();
        return false;
    }
    stream.takeData(data);
    return CToolFile::write(path,
                            std::string_view(reinterpret_cast<const char*>(data.data()),
                                             static_cast<std::size_t>(data.getSize())),
                            error);
}

bool run(const COptions& options, std::string& error)
{
    std::string document;
    std::vector<CImpulseSpec> impulses;
    CFileSet set;
    CResponseTable table;
    if (!CToolFile::read(options.description, document, error))
        return false;
    if (!CImpulseReader::read(document, impulses, error) || !makeSet(impulses, set, table, error)) {
        error = options.description.string() + ": " + error;
        return false;
    }
    return writeSet(set, options.output, error) &&
           (options.responses.empty() ||
            CToolFile::write(options.responses, table.getText(), error));
}

} // namespace

int main(int argc, char** argv)
{
    COptions options;
    CLI::App app("Computes the impulse responses of tape machines and packs them into a file set");
    app.add_option("DESCRIPTION", options.description, "XML document of the machines")->required();
    app.add_option("OUT", options.output, "File set to write")->required();
    app.add_option("--responses", options.responses,
                   "Table to write: frequency and each impulse's level in dB, for gnuplot");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 1;
    }
    std::string error;
    if (run(options, error))
        return 0;
    std::fprintf(stderr, "reelpath-impulse: %s\n", error.c_str());
    return 1;
}
