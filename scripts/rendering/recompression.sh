# shellcheck shell=sh disable=SC2034,SC2154 # part of scripts/check-rendering: streams stored otherwise.

# make_images: four images, which look the same, behind chains of filters and predictors.
make_images() {
    begin_file "$work/images.pdf"
    put_object 2 '<< /Type /Pages /Count 1 /Kids [ 3 0 R ] /MediaBox [ 0 0 100 100 ] >>'
    put_object 3 '<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << /XObject' \
        '<< /A 5 0 R /B 6 0 R /C 7 0 R /D 8 0 R >> >> >>'
    put_object 4 '<< /Length 111 >>' stream \
        'q 40 0 0 40 5 5 cm /A Do Q q 40 0 0 40 55 5 cm /B Do Q q 40 0 0 40 5 55 cm /C Do Q q 40 0 0 40 55 55 cm /D Do Q' endstream
    put_object 5 '<< /Type /XObject /Subtype /Image /Width 8 /Height 8 /ColorSpace /DeviceRGB' \
        '/BitsPerComponent 8 /Filter [ /ASCIIHexDecode /FlateDecode ] /DecodeParms [ null << /Predictor 15 /Colors 3 /Columns 8 >> ] /Length 221 >>' \
        stream '78DA636070EB914B5965D374226AC1B38A7D2CD3EE286DF9E57049228E51307CAE1C36C0248803301857EE0F9C7E377F' \
        'EBEFDECB92AB3F9A9FE40F7DAE5BCCEA3D91D1A5EB028946A5ADF9D4724A60D10BBD036C3EF754B2FE387548252CB3A8' \
        '3BC258BE9719AB5100A74C3204>' endstream
    put_object 6 '<< /Type /XObject /Subtype /Image /Width 8 /Height 8 /ColorSpace /DeviceRGB' \
        '/BitsPerComponent 8 /Filter [ /ASCIIHexDecode /FlateDecode ] /DecodeParms [ null << /Predictor 2 /Colors 3 /Columns 8 >> ] /Length 102 >>' \
        stream '78DA6370EB91C30604C3E7621557CA588755DCB8723F567197AE0B58C543673FC42A9EB6E61356F1F2BDCC58C5017F91' \
        '1ED5>' endstream
    put_object 7 '<< /Type /XObject /Subtype /Image /Width 8 /Height 8 /ColorSpace /DeviceRGB' \
        '/BitsPerComponent 8 /Filter [ /ASCIIHexDecode /RunLengthDecode ] /DecodeParms null /Length 395 >>' \
        stream '6300468C1E64AA3C82C85AA0E678BE0496DC22B4FA40D2185E11579D2F75BB4D93D96BB1F789CF15A7ED33C50B51E329' \
        '6F2268AE4086CC5EA4EA7CC2089AE026B8FE44D61C62F43A803379BF5197DD6FB5FB8DD319ABF137C90F55E72D73054B' \
        '91448AD0625BA8EE80C60C9EE42ABC0248DA2066F83E84165CA2559BE173B9FF91D71DAFF53BCD1359EB3177094F9527' \
        '6DB366ACF284CA10A2E82EC0064CDE246AFC42881A60A6387EC477BD0395DB21B3F93FD1175DEF357B0D53992B71B749' \
        '8FD580>' endstream
    put_object 8 '<< /Type /XObject /Subtype /Image /Width 8 /Height 8 /ColorSpace /DeviceRGB' \
        '/BitsPerComponent 8 /Filter /ASCIIHexDecode /DecodeParms null /Length 389 >>' \
        stream '00468C1E64AA3C82C85AA0E678BE0496DC22B4FA40D2185E11579D2F75BB4D93D96BB1F789CF15A7ED33C50B51E3296F' \
        '2268AE4086CC5EA4EA7CC2089AE026B8FE44D61C62F43A803379BF5197DD6FB5FB8DD319ABF137C90F55E72D73054B91' \
        '448AD062A8EE80C60C9EE42ABC0248DA2066F83E84165CA2559BE173B9FF91D71DAFF53BCD1359EB3177094F95276DB3' \
        '66ACF284CA10A2E82EC0064CDE246AFC42881A60A6387EC477BD0395DB21B3F93FD1175DEF357B0D53992B71B7498FD5' \
        '>' endstream
    end_file
}

# Every stream of every sample, images of all kinds among them, compressed and expanded.
check_recompression() {
    group "compressed and expanded files are sound, and look the same"
    make_images
    scale=1
    for file in "$work"/pairs/*.pdf "$work/images.pdf"; do
        name=${file##*/}
        name=${name%.pdf}
        draw_nested "$name-stored" "$file"
        for way in flate none; do
            out=$work/$name-$way.pdf
            "$programs/recompress" --faithful $way "$file" "$out" 2>"$work/said" ||
                bad "recompress $way $name: $(cat "$work/said")"
            qpdf --check "$out" >"$work/said" 2>&1 || bad "recompress $way $name: $(tail -n 1 "$work/said")"
            draw_nested "$name-$way" "$out"
            same_pages "$name-stored" "$name-$way"
        done
    done
    scale=2
}
