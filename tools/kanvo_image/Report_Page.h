// Report_Page: what `kanvo-image report` has measured, as a table, as CSV and as a page to look at.
#ifndef REPORT_PAGE_H
#define REPORT_PAGE_H

#include <cstdint>
#include <string>
#include <vector>

#include "Image_Difference.h"
#include "Image_Formats.h"
#include "Program_Files.h"

namespace kanvo_image
{

//! A picture in one format.
struct Entry
{
    image::Format     format;
    std::uint64_t     bytes;  //!< of the stored file
    double            microseconds;
    image::Difference error;
};

struct PictureReport
{
    std::string        name;
    std::uint32_t      width;
    std::uint32_t      height;
    std::string        colours;   //!< how many there are
    image::Format      smallest;  //!< of the lossless ones
    std::vector<Entry> entries;
    Bytes              thumbnail;  //!< a PNG file

    std::uint64_t Pixels() const { return std::uint64_t{width} * height; }
};

std::string ReportTable(const std::vector<PictureReport>& reports);
std::string ReportCsv(const std::vector<PictureReport>& reports);
//! One file, thumbnails included.
std::string ReportHtml(const std::vector<PictureReport>& reports);

}  // namespace kanvo_image

#endif
