#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "Checks.h"
#include "Finding.h"
#include "Registrations.h"
#include "Trials.h"
#include "imaging/DecoderPaths.h"
#include "integration/AgentManifest.h"

namespace quorvantis::doctor {

namespace {

bool isExecutable(const std::string& path) {
    std::error_code error;
    return access(path.c_str(), X_OK) == 0 && std::filesystem::is_regular_file(path, error);
}

/// Paths as people write them.
std::vector<std::string> normalized(std::vector<std::string> paths) {
    for (std::string& path : paths) path = std::filesystem::path(path).lexically_normal();
    return paths;
}

/// The decoders of formats that have a program of their own, as far as they are missing.
std::string missingFormats(const std::string& decoder) {
    std::string formats;
    if (!isExecutable(decoder + "-tiff")) formats += " TIFF";
    if (!isExecutable(decoder + "-heif")) formats += " HEIC AVIF";
    return formats;
}

Finding examineDecoder(const std::string& path) {
    const DecoderTrial trial = tryDecoder(path);
    if (!trial.isRight)
        return failure(path + " does not decode a small picture.", "Install quorvantis-mcp again, whole.");
    if (const std::string formats = missingFormats(path); !formats.empty())
        return failure(path + " has no decoder beside it for:" + formats,
                       "Install quorvantis-mcp again, whole.");
    if (!trial.isSandboxed)
        return note(path + " decodes pictures, but without a filter of its system calls.");
    return fine(path + " decodes pictures, in its sandbox");
}

}  // namespace

Finding examineServer(Examination& examination) {
    const AgentManifest& manifest = examination.manifest;
    const std::string path = serverPath(manifest);
    if (access(path.c_str(), F_OK) != 0)
        return failure("There is no " + path + ".",
                       "Install quorvantis-mcp there. " + connectAdvice(manifest.agent));
    examination.canStart = isExecutable(path);
    if (!examination.canStart) return failure(path + " is not executable.", "Install quorvantis-mcp there.");
    try {
        const ServerTrial trial = tryServer(path, serverArguments(manifest));
        if (!trial.version.empty() && trial.toolCount > 0)
            return fine(path + ", version " + trial.version + ", lists " + std::to_string(trial.toolCount) +
                        " tools within " + std::to_string(trial.time.count()) + " ms");
        return failure(path + (trial.complaint.empty() ? " does not answer." : " says: " + trial.complaint),
                       "Install quorvantis-mcp again.");
    } catch (const std::exception& mistake) {
        return failure(path + " cannot be started: " + mistake.what(), "Install quorvantis-mcp again.");
    }
}

Finding examinePictures(Examination& examination) {
    std::error_code error;
    const auto server = std::filesystem::canonical(serverPath(examination.manifest), error);
    const auto places = imageDecoderPaths(server);
    if (places.empty())
        return decodesPictures()
                   ? fine("This system decodes them.")
                   : failure("This system does not decode a small picture.", "Update the system.");
    const auto place = std::find_if(places.begin(), places.end(), isExecutable);
    if (place == places.end())
        return failure(
            "No image decoder, so no picture that was saved again is recognised. It is looked for at " +
                joined(normalized(places)),
            "Install quorvantis-mcp whole: the server does not work alone.");
    return examineDecoder(normalized({*place}).front());
}

}  // namespace quorvantis::doctor
