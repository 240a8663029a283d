#pragma once

#include "support/document_builder.h"
#include "support/recording_log.h"

namespace Testing {

/// A document with the form dictionary 5; `objects` are its fields and whatever they refer to.
inline std::string
formFile(std::string_view form,
         std::initializer_list<std::pair<std::uint32_t, std::string_view>> objects) {
    DocumentBuilder file = DocumentBuilder::minimal();
    file.object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 5 0 R >>").object(5, form);
    for (const auto& [id, body] : objects)
        file.object(id, body);
    return file.bytes();
}

/// What was logged through the filter of the forms alone.
inline std::string formMessages(const RecordingLog& log) {
    std::string all;
    for (const RecordingLog::Entry& entry : log.entries()) {
        if (Host::SysLogFilter::name(entry.filter) == "Lib.File.PDF.Form") all += entry.text;
    }
    return all;
}

} // namespace Testing
