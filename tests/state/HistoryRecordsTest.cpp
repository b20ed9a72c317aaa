#include "state/HistoryRecords.h"

#include "harness/RecordChecks.h"

namespace quorvantis {

TEST(HistoryRecordsTest, AreReadAndWritten) {
    const std::string golden =
        R"({"id":"00000000-0000-4000-8000-00000000000A","createdAt":-0.5,"primaryKind":"image","items":[)"
        R"({"id":"00000000-0000-4000-8000-00000000000B","index":-1,"representations":[)"
        R"({"id":"00000000-0000-4000-8000-00000000000C","uti":"public.png","byteCount":9223372036854775807,)"
        R"("sha256":"ab","storagePath":"\/p","inlineText":"\u0000","isOriginalRepresentation":true,)"
        R"("imageMetadata":{"pixelWidth":640,"pixelHeight":480,"pixelHash":"cd","bitsPerComponent":8,)"
        R"("hasAlpha":false,"colorModel":"RGB","profileName":"sRGB","orientation":6,"frameCount":1,)"
        R"("originalUTI":"public.tiff","isOriginalFile":false,"isBitExact":true,"conversion":"png"},)"
        R"("thumbnailPath":"\/t"},{"id":"00000000-0000-4000-8000-00000000000D","uti":"","byteCount":0,)"
        R"("isOriginalRepresentation":false}]},)"
        R"({"id":"00000000-0000-4000-8000-00000000000E","index":1,"representations":[]}]})";
    const std::string image = "items[0].representations[0].imageMetadata";
    const std::vector<harness::Change> changes = {
        {"00000000000A", "00000000000a", ""},
        {R"("uti":"",)", R"("uti":"","sha256":null,"imageMetadata":null,)", ""},
        {R"("orientation":6)", R"("orientation":60e-1)", ""},
        {"9223372036854775807", "9223372036854775807.0", ""},
        {"00000000-0000-4000-8000-00000000000A", "000000000000400080000000000000A0", "id mistyped"},
        {R"(,"primaryKind":"image")", "", "primaryKind missing"},
        {R"("index":-1,)", "", "items[0].index missing"},
        {"775807", "775808", "items[0].representations[0].byteCount mistyped"},
        {R"("byteCount":0)", R"("byteCount":1.5)", "items[0].representations[1].byteCount mistyped"},
        {R"("hasAlpha":false)", R"("hasAlpha":"false")", image + ".hasAlpha mistyped"},
        {R"("hasAlpha":false)", R"("hasAlpha":0)", image + ".hasAlpha mistyped"},
        {R"("isBitExact":true,)", "", image + ".isBitExact missing"},
        {R"("representations":[]})", R"("representations":[]},null)", "items[2] missing"},
        {R"("representations":[])", R"("representations":[[]])", "items[1].representations[0] mistyped"},
    };
    harness::expectRecord<HelperEntry>(golden, changes);
    harness::expectRecord<HelperEntry>(
        R"({"id":"00000000-0000-4000-8000-00000000000A","createdAt":0.30000000000000004,"primaryKind":"","items":[]})");
}

}  // namespace quorvantis
