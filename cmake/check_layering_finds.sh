#!/bin/sh
# Shows check_layering.sh a small tree with known offenders: it must name exactly those.
#
# usage: check_layering_finds.sh SCRATCH
set -eu

check=$(cd "$(dirname "$0")" && pwd)/check_layering.sh
scratch=$1
rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"
: >expected

# put FILE ok|bad INCLUDE: FILE has that one include
put() {
    mkdir -p "$(dirname "$1")"
    echo "#include $3" >>"$1"
    if [ "$2" = bad ]; then
        echo "$1:$(awk 'END { print NR }' "$1")" >>expected
    fi
}

put include/host/ref.h ok '<atomic>'
put include/pdf/errors.h ok '<cstdint>'
put include/pdf/values.h ok '<host/ref.h>'
put include/host/files.h bad '<pdf/values.h>'
put include/pdf/values.h bad '"values/scalars.h"'
put src/host/inflate.h ok '<isa-l/igzip_lib.h>'
put src/host/inflate.h ok '<pdf/errors.h>'
put src/host/inflate.h bad '<pdf/values.h>'
put include/host/files.h bad '"inflate.h"'
put src/values/scalars.h ok '<pdf/values.h>'
put src/values/scalars.cpp ok '"scalars.h"'
put src/values/scalars.cpp ok '"host/inflate.h"'
put src/values/scalars.cpp ok '"spelling/digits.h"'
put src/spelling/digits.h bad '"host/inflate.h"'
put src/host/inflate.h bad '"spelling/digits.h"'
put src/values/scalars.cpp bad '"state/document_state.h"'
put src/state/document_state.h ok '"values/scalars.h"'
put src/document/document_obj.h ok '"reader/loader.h"'
put src/state/document_state.h bad '"document/document_obj.h"'
put src/state/document_state.h bad '"document_obj.h"'
put src/reader/loader.h ok '"state/document_state.h"'
put src/reader/loader.h bad '"writer/serializer.h"'
put src/reader/loader.h bad '"document/document_obj.h"'
put src/reader/loader.h bad '"../forms/form.h"'
put src/writer/serializer.h bad '<unistd.h>'
put src/compose/clone.h bad '"forms/form.h"'
put src/forms/form.h bad '  "compose/clone.h" // why'
put include/pdf/import.h ok '<host/ref.h>'
put include/pdf/import.h ok '<pdf/document.h>'
put include/pdf/import.h ok '<pdf/tools/pages.h>'
put include/pdf/import.h bad '"tools/changes.h"'
put import/source.h ok '<qpdf/QPDF.hh>'
put import/source.cpp ok '"source.h"'
put import/source.cpp ok '<pdf/errors.h>'
put import/source.cpp ok '<pdf/document.h>'
put import/source.cpp ok '<pdf/tools/pages.h>'
put import/source.cpp bad '"tools/changes.h"'
put import/source.cpp bad '"host/inflate.h"'
put import/source.cpp bad '<unistd.h>'
put src/reader/loader.h bad '<pdf/import.h>'
put src/reader/loader.h bad '<qpdf/QPDF.hh>'
put include/pdf/tools/pages.h ok '<pdf/values.h>'
put src/tools/changes.h ok '<pdf/tools/pages.h>'
put src/tools/changes.h bad '"tools/forms/field_entries.h"'
put src/tools/pages/pages.cpp ok '"tools/changes.h"'
put src/tools/pages/pages.cpp bad '"values/scalars.h"'
put src/tools/pages/pages.cpp bad '"tools/letterheads/copies.h"'
put src/tools/forms/filling.cpp ok '"tools/fonts/text_font.h"'
put src/tools/forms/filling.cpp bad '"tools/letterheads/copies.h"'
put src/tools/other/new.cpp bad '"tools/changes.h"'
put src/compose/clone.h bad '"tools/changes.h"'
put src/document/document_obj.h bad '<pdf/tools/pages.h>'
put include/pdf/values.h bad '<pdf/tools/pages.h>'

if sh "$check" . >report; then
    echo "the offenders passed" >&2
    exit 1
fi
sed -n 's/^\([^:]*:[0-9]*\): .*/\1/p' report | LC_ALL=C sort >found
LC_ALL=C sort -o expected expected
diff expected found
