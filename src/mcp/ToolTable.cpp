#include <array>
#include <span>

#include "mcp/Handlers.h"
#include "mcp/Tools.h"

namespace quorvantis::QuorvantisMCP {

namespace {

constexpr Argument workspaceRoot = {
    .name = "workspace_root",
    .type = "string",
    .description = "Absolute path of your workspace folder, which receives the files.",
    .isRequired = true};
constexpr Argument sessionID = {.name = "session_id",
                                .type = "string",
                                .description = "Identifier of your client's session, if you know it."};
constexpr Argument turnID = {
    .name = "turn_id", .type = "string", .description = "Identifier of the current turn, if you know it."};
constexpr Argument assetID = {.name = "asset_id",
                              .type = "string",
                              .description = "Asset identifier, 64 hexadecimal digits.",
                              .isRequired = true};

constexpr std::array referencesArguments = {
    Argument{.name = "references",
             .type = "array",
             .description = "The references exactly as they stand in the user's prompt",
             .isRequired = true,
             .minimum = 1,
             .maximum = maximumReferences,
             .elementType = "string"},
    workspaceRoot, sessionID, turnID};

constexpr std::array attachmentProperties = {
    Argument{.name = "file_path",
             .type = "string",
             .description = "Path of the image as a local file; enough by itself."},
    Argument{.name = "asset_id", .type = "string", .description = "Asset identifier, 64 hexadecimal digits."},
    Argument{.name = "sha256",
             .type = "string",
             .description = "SHA-256 of the image file, 64 hexadecimal digits."},
    Argument{.name = "pixel_hash",
             .type = "string",
             .description = "Hash of the decoded pixels, 64 hexadecimal digits."},
    Argument{
        .name = "pixel_width", .type = "integer", .description = "Width in pixels as the file declares it."},
    Argument{.name = "pixel_height",
             .type = "integer",
             .description = "Height in pixels as the file declares it."}};

constexpr std::array attachmentsArguments = {
    Argument{.name = "attachments",
             .type = "array",
             .description = "The attached images, each with one identity.",
             .isRequired = true,
             .minimum = 1,
             .elementType = "object",
             .elementProperties = attachmentProperties.data(),
             .elementPropertyCount = attachmentProperties.size()},
    workspaceRoot, sessionID, turnID};

constexpr std::array materializeArguments = {assetID, workspaceRoot};

constexpr std::array metadataArguments = {assetID};

constexpr std::array searchArguments = {
    Argument{.name = "query",
             .type = "string",
             .description = "Words to look for, as they would stand in what was copied. Must not be blank.",
             .isRequired = true,
             .minimum = 1},
    Argument{.name = "limit",
             .type = "integer",
             .description = "The most items to return",
             .minimum = minimumLimit,
             .maximum = maximumLimit,
             .defaultValue = defaultLimit}};

constexpr std::array itemArguments = {
    Argument{.name = "entry_id",
             .type = "string",
             .description = "The entry's identifier, exactly as search_clipboard_history returned it.",
             .isRequired = true}};

constexpr std::array<Tool, 8> table = {{
    {
        .name = "resolve_image_references",
        .description =
            "Turns image references that the user pasted into the current prompt (\"quorvantis://image/\" and 64 "
            "hexadecimal digits) into exact copies of the original images in your workspace. Choose it whenever such "
            "references stand in the prompt: it is the most reliable way to an image. Returns \"matched\", "
            "\"confidence\" and \"images\", each with its \"workspace_path\", which you then read as a file, and "
            "\"asset_id\", \"uti\", \"byte_count\", and where known \"width\" and \"height\". For images attached in "
            "another way use resolve_current_prompt_images. Never make references up. If Quorvantis refuses, tell "
            "the user what it says.",
        .arguments = referencesArguments,
        .readOnly = false,
        .onlyAgent = {},
        .handler = resolveReferences,
    },
    {
        .name = "resolve_current_prompt_images",
        .description =
            "Finds the originals of images attached to the current prompt and copies them into your workspace. Choose "
            "it when you have an attached image as a local file, an asset identifier from another Quorvantis tool, or "
            "the image's hashes; when the prompt holds quorvantis://image/ references use resolve_image_references. "
            "Give every attachment one identity: \"file_path\", else \"asset_id\", else \"sha256\", with \"pixel_hash\", "
            "\"pixel_width\" and \"pixel_height\" where you have all three. Returns \"matched\", \"confidence\" and "
            "\"images\", each with its \"workspace_path\". A chat preview that was scaled down matches nothing: ask the "
            "user for the image's reference from Quorvantis instead of trying again.",
        .arguments = attachmentsArguments,
        .readOnly = false,
        .onlyAgent = {},
        .handler = resolve,
    },
    {
        .name = "materialize_asset",
        .description =
            "Copies one image of the current prompt, named by its asset_id, into your workspace, bit for bit. Choose it "
            "when you have an asset_id from another Quorvantis tool and need the file itself; use get_asset_metadata "
            "when facts about the image are enough, and resolve_image_references for references from the prompt. "
            "Returns \"workspace_path\", which you then read as a file, \"relative_path\", \"bit_exact\", and "
            "\"conversion\", always null. If the asset is unavailable, it is not part of the current prompt: ask the "
            "user to share the image again.",
        .arguments = materializeArguments,
        .readOnly = false,
        .onlyAgent = {},
        .handler = materialize,
    },
    {
        .name = "get_asset_metadata",
        .description =
            "Describes one image of the current prompt, named by its asset_id, without copying it: \"asset_id\", "
            "\"entry_id\", \"uti\" (its type), \"byte_count\", \"bit_exact\", and where known \"width\", \"height\" and "
            "\"pixel_hash\". Choose it to decide whether you need the image; to look at it use materialize_asset. If the "
            "asset is unavailable, it is not part of the current prompt: ask the user to share the image again.",
        .arguments = metadataArguments,
        .readOnly = true,
        .onlyAgent = {},
        .handler = metadata,
    },
    {
        .name = "get_integration_status",
        .description =
            "Tells whether the Quorvantis desktop application, which keeps the user's clipboard history and images, "
            "can be reached, and what it lets you read. Returns \"connected\", your \"agent\" identifier and what "
            "the application reports of itself, such as whether you have full-history access. Call it when another "
            "Quorvantis tool failed and you want to tell the user why, not before every call: the other tools say "
            "by themselves what went wrong. If it fails, Quorvantis is not running or does not accept this "
            "connection: ask the user to open Quorvantis; trying again at once does not help.",
        .arguments = {},
        .readOnly = true,
        .onlyAgent = {},
        .handler = getIntegrationStatus,
    },
    {
        .name = "search_clipboard_history",
        .description =
            "Searches what the user has copied on this computer, in any application: text, code, links, file paths. "
            "Choose it when the user refers to something copied earlier (\"the link I copied this morning\"). Returns "
            "\"matched\" and \"items\"; each item has \"entry_id\", \"created_at\" (seconds since "
            "2001-01-01T00:00:00Z, 978307200 less than Unix time), \"kind\", \"preview\" and \"detail\", and where "
            "known \"source_application\", the full \"text\" and \"file_paths\". Long texts fill your context: ask "
            "for a small limit first, and use get_clipboard_item when you already have an entry_id. If nothing "
            "matches, try fewer or other words. If Quorvantis refuses, the user has not given you access to the whole "
            "history: say so and go on without it; do not try again.",
        .arguments = searchArguments,
        .readOnly = true,
        .onlyAgent = {},
        .handler = searchHistory,
    },
    {
        .name = "get_clipboard_item",
        .description =
            "Returns one entry of the user's clipboard history by its identifier: \"entry_id\", \"created_at\" "
            "(seconds since 2001-01-01T00:00:00Z, 978307200 less than Unix time), \"kind\", \"preview\" and "
            "\"detail\", and where known \"source_application\", the full \"text\" and \"file_paths\". Choose it when "
            "you have an entry_id from search_clipboard_history or from the user and need that one entry; to find "
            "entries by their content use search_clipboard_history. A long text fills your context. If the entry is "
            "unavailable, the user has removed it or the identifier is wrong: search again instead of guessing.",
        .arguments = itemArguments,
        .readOnly = true,
        .onlyAgent = {},
        .handler = getHistoryItem,
    },
    {
        .name = "get_current_prompt_assets",
        .description =
            "Returns exact workspace copies of the images in the user's latest prompt, without your naming them, as far "
            "as the client's prompt hook has confirmed them. Choose it first when the user speaks of an attached image "
            "and the prompt holds no quorvantis://image/ reference. Returns \"matched\", \"images\", each with its "
            "\"workspace_path\", and \"next_step\", which says what to do now: follow it. When nothing matched, calling "
            "again does not help.",
        .arguments = {},
        .readOnly = true,
        .onlyAgent = "cursor",
        .handler = currentPromptAssets,
    },
}};

}  // namespace

std::span<const Tool> tools() {
    return table;
}

}  // namespace quorvantis::QuorvantisMCP
