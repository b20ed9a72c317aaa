#include <algorithm>
#include <cstdint>
#include <cstdio>  // jpeglib.h needs it
#include <cstdlib>
#include <iterator>
#include <jerror.h>
#include <jpeglib.h>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "decoder/formats/Readers.h"
#include "decoder/picture/GiveUp.h"
#include "decoder/picture/Layout.h"
#include "decoder/picture/Orientation.h"
#include "decoder/picture/PictureFile.h"
#include "decoder/picture/UprightPicture.h"
#include "imaging/DecodedPixels.h"

namespace quorvantis::decoder {

namespace {

constexpr int maximumScans = 100;  // encoders write about ten; each takes a pass over the whole picture

// The callbacks of libjpeg. They derive from its C structures, so that pointers can be converted.

/// Reads the file.
struct Source : jpeg_source_mgr {
    explicit Source(PictureReader& reader) : jpeg_source_mgr(), reader_(reader) {
        init_source = [](j_decompress_ptr) {};
        fill_input_buffer = [](j_decompress_ptr decoder) { return of(decoder).fill(); };
        skip_input_data = [](j_decompress_ptr decoder, long count) { of(decoder).skip(count); };
        resync_to_restart = jpeg_resync_to_restart;
        term_source = [](j_decompress_ptr) {};
    }

  private:
    static Source& of(j_decompress_ptr decoder) { return *static_cast<Source*>(decoder->src); }

    boolean fill() {
        const auto piece = reader_.nextPiece();
        if (piece.empty()) giveUp();
        next_input_byte = piece.data();
        bytes_in_buffer = piece.size();
        return TRUE;
    }

    void skip(long count) {
        for (auto left = static_cast<std::size_t>(std::max(count, 0L)); left > 0;) {
            if (bytes_in_buffer == 0) fill();
            const auto skipped = std::min(left, bytes_in_buffer);
            next_input_byte += skipped;
            bytes_in_buffer -= skipped;
            left -= skipped;
        }
    }

    PictureReader& reader_;
};

struct ErrorManager : jpeg_error_mgr {
    ErrorManager() : jpeg_error_mgr() {
        jpeg_std_error(this);
        error_exit = [](j_common_ptr) { giveUp(); };
        emit_message = [](j_common_ptr decoder, int level) {
            if (level < 0 && static_cast<ErrorManager*>(decoder->err)->isDamage()) giveUp();
        };
        output_message = [](j_common_ptr) {};
    }

    bool decodingRows = false;

  private:
    /// While decoding rows, a warning means that pixels are made up, except for stray bytes between markers.
    bool isDamage() const { return decodingRows && msg_code != JWRN_EXTRANEOUS_DATA; }
};

struct ScanLimit : jpeg_progress_mgr {
    ScanLimit() : jpeg_progress_mgr() {
        progress_monitor = [](j_common_ptr decoder) {
            if (reinterpret_cast<j_decompress_ptr>(decoder)->input_scan_number > maximumScans) giveUp();
        };
    }
};

class Decoder {
  public:
    explicit Decoder(PictureReader& reader) : source_(reader) {
        jpeg_.err = &errors_;
        jpeg_create_decompress(&jpeg_);
        jpeg_.src = &source_;
        jpeg_.progress = &scans_;
        jpeg_save_markers(&jpeg_, JPEG_APP0 + 1, 65535);  // EXIF
        jpeg_save_markers(&jpeg_, JPEG_APP0 + 2, 65535);  // ICC profile
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { jpeg_destroy_decompress(&jpeg_); }

    PictureHeader header() {
        jpeg_read_header(&jpeg_, TRUE);
        inverted_ = jpeg_.saw_Adobe_marker;
        jpeg_.dct_method = JDCT_ISLOW;
        if (jpeg_.num_components == 3) jpeg_.out_color_space = JCS_EXT_RGBA;
        if (jpeg_.num_components == 4) jpeg_.out_color_space = JCS_CMYK;
        return {.size = {jpeg_.image_width, jpeg_.image_height},
                .declared = {},
                .layout = layout(),
                .orientation = orientation(),
                .colours = {.profile = profile(), .calibration = {}}};
    }

    void decode(UprightPicture& picture) {
        errors_.decodingRows = true;
        jpeg_start_decompress(&jpeg_);
        std::vector<std::uint8_t> row(picture.rowSize());
        auto* rows = row.data();
        while (jpeg_.output_scanline < jpeg_.output_height) {
            jpeg_read_scanlines(&jpeg_, &rows, 1);
            // With an Adobe marker, 255 means no ink.
            if (jpeg_.out_color_space == JCS_CMYK && inverted_)
                for (auto& ink : row) ink = static_cast<std::uint8_t>(255 - ink);
            picture.addRow(row);
        }
        for (int i = 0; i < jpeg_.num_components; ++i)
            if (!isComplete(i)) giveUp();
        jpeg_finish_decompress(&jpeg_);
    }

  private:
    /// Whether the file had all scans of a component.
    bool isComplete(int component) const {
        if (!jpeg_.comp_info[component].quant_table) return false;  // it is set by the first scan
        if (!jpeg_.coef_bits) return true;                          // not progressive
        const auto& missingBits = jpeg_.coef_bits[component];       // -1 for all
        return std::all_of(std::begin(missingBits), std::end(missingBits),
                           [](int bits) { return bits == 0; });
    }

    Layout layout() const {
        switch (jpeg_.out_color_space) {
            case JCS_GRAYSCALE: return Layout::gray;
            case JCS_EXT_RGBA: return Layout::rgbx;
            case JCS_CMYK: return Layout::cmyk;
            default: giveUp();
        }
    }

    Orientation orientation() const {
        for (auto* marker = jpeg_.marker_list; marker; marker = marker->next) {
            const std::span<const std::uint8_t> data(marker->data, marker->data_length);
            const std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
            if (marker->marker == JPEG_APP0 + 1 && text.starts_with(exifMark))
                return exifOrientation(data).value_or(upright);
        }
        return upright;
    }

    std::vector<std::uint8_t> profile() {
        JOCTET* data = nullptr;
        unsigned size = 0;
        if (!jpeg_read_icc_profile(&jpeg_, &data, &size)) return {};
        const std::unique_ptr<JOCTET, decltype(&std::free)> owner(data, &std::free);
        return {data, data + size};
    }

    Source source_;
    ErrorManager errors_;
    ScanLimit scans_;
    jpeg_decompress_struct jpeg_ = {};
    bool inverted_ = false;
};

}  // namespace

DecodedPixels readJPEG(const PictureFile& file) {
    PictureReader reader(file);
    Decoder decoder(reader);
    UprightPicture picture(decoder.header());
    decoder.decode(picture);
    return picture.finish();
}

}  // namespace quorvantis::decoder
