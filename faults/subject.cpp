#include "operations.h"
#include "support/document_builder.h"

#include <host/error.h>
#include <pdf/tools/result.h>

#include <string>

namespace Faults {

std::string sampleBytes(std::string_view content, bool nested) {
    Support::DocumentBuilder builder;
    builder.object(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm 8 0 R /ViewerPreferences << >> >>")
        .object(2, "<< /Type /Pages /Kids [ 3 0 R 4 0 R ] /Count 2 >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /Contents 5 0 R /Resources << /Font << /F1 7 0 R "
                   ">> /ProcSet [ /PDF /Text ] >> /Annots [ 10 0 R 11 0 R 8 0 R ] >>")
        .object(4, "<< /Type /Page /Parent 2 0 R /Contents [ 5 0 R 6 0 R ] >>")
        .stream(5, "/Filter /FlateDecode ", Support::deflated(content))
        .stream(6, "", std::string(70000, 'q'))
        .object(7, "<< /Type /Font /BaseFont /Helvetica /W [ 1 -2.5 true null ] /Id <00FE> >>")
        .object(8, "<< /Fields [ 9 0 R 14 0 R ] /DA (/F1 0 Tf) >>")
        .object(9, "<< /T (group) /Kids [ 10 0 R 11 0 R ] >>")
        .object(10, "<< /FT /Tx /T (name) /V (old) /MaxLen 9 /Parent 9 0 R /AP << /N 13 0 R >> "
                    "/Subtype /Widget /Rect "
                    "[ 0 0 50 20 ] /MK << /BG [ 1 ] >> >>")
        .object(11, "<< /FT /Btn /T (check) /V /Off /Parent 9 0 R /Subtype /Widget /Rect [ 60 0 70 "
                    "10 ] >>")
        .object(14, "<< /FT /Ch /T (list) /Ff 2097152 /Opt [ (a) (b) ] /V (a) /Subtype /Widget "
                    "/Rect [ 0 40 50 60 ] >>")
        // A second stream of each kind, so that there is something to undo.
        .stream(12, "/Filter /FlateDecode ", Support::deflated("q Q q Q"))
        .stream(13, "/BBox [ 0 0 9 9 ] ", "n");
    if (nested) {
        builder.object(2, "<< /Type /Pages /Rotate 90 /Kids [ 3 0 R 15 0 R 4 0 R ] >>")
            .object(15, "<< /MediaBox [ 0 0 16 0 R 9 ] /Resources << /A 1 >> /Kids 17 0 R >>")
            .object(16, "99")
            .object(17, "[ 4 0 R 18 0 R ]")
            .object(18, "<< /Contents 19 0 R /CropBox [ 1 1 8 8 ] >>")
            .object(19, "[ 5 0 R 6 0 R ]");
    }
    return builder.bytes();
}

Subject::Subject(bool nested)
    : source(Support::stripeOf(sampleBytes("0 0 99 99 re f", nested))),
      failing(Host::make<Support::FailingStripe>(source)),
      result(Host::MemoryStripe::create()),
      failingTarget(Host::make<Support::FailingStripe>(result)),
      target(failingTarget) {}

void Subject::open() {
    document = Document::create(source);
    foreign = Support::open(sampleBytes("q Q"));
    stream = Support::streamOf(*document, 5);
}

void require(bool done) {
    using namespace Libraries::Files::PDF::Tools;
    if (!done) throw BadResultAccess(Failure(Host::Error::get()));
}

} // namespace Faults
