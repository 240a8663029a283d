# Forms:
#   fields  the fields of the sample forms
#   fill    each kind is set, written and read again
#   unfit   arguments and values that are refused

# lists FILE checks that its fields are the lines of standard input, which have blanks for tabs.
lists() {
    tr ' ' '\t' >"$work/wanted"
    "$programs/fields" "$1" >"$work/got"
    diff "$work/wanted" "$work/got" || fail "the fields of $1 are others"
}

test_fields() {
    lists "$samples/invoice-form.pdf" <<ROWS
customer text 0x0 
date text 0x0 
total text 0x0 
paid button 0x2 Off
country choice 0x20000 DE
ROWS
    lists "$samples/form-2pages.pdf" <<ROWS
name0 text 0x0 x
ok0 button 0x2 Off
ch0 choice 0x20000 A
r0 button 0xC002 v1
r0.0 button 0x0 
r0.1 button 0x0 
name1 text 0x0 x
ok1 button 0x2 Off
ch1 choice 0x20000 A
r1 button 0xC002 v1
r1.0 button 0x0 
r1.1 button 0x0 
ROWS
}

test_fill() {
    "$programs/fill" "$samples/form-2pages.pdf" "$work/filled.pdf" \
        name0=Zürich=1 name1= ok1=Yes ch0=B r1=v2
    lists "$work/filled.pdf" <<ROWS
name0 text 0x0 Zürich=1
ok0 button 0x2 Off
ch0 choice 0x20000 B
r0 button 0xC002 v1
r0.0 button 0x0 
r0.1 button 0x0 
name1 text 0x0 
ok1 button 0x2 Yes
ch1 choice 0x20000 A
r1 button 0xC002 v2
r1.0 button 0x0 
r1.1 button 0x0 
ROWS
    # Shown as set: the box by its state, of the radio buttons the second alone, text by the viewer,
    # which has a place among the options left to go by only where nothing was chosen.
    [ "$(grep -ac '/AS /Yes' "$work/filled.pdf")" -eq 1 ] || fail "the box is not shown as checked"
    [ "$(grep -ac '/AS /v2' "$work/filled.pdf")" -eq 1 ] || fail "the radio button is not shown"
    grep -aq '/NeedAppearances true' "$work/filled.pdf" || fail "no appearances asked for"
    [ "$(grep -ao '/I \[.*/T ([a-z0-9]*)' "$work/filled.pdf" | sed 's/.*T //')" = '(ch1)' ] ||
        fail "places: $(grep -a '/I \[' "$work/filled.pdf")"

    "$programs/fill" "$samples/invoice-form.pdf" "$work/filled.pdf" 'customer=C:\new\(1)' country='F\R'
    lists "$work/filled.pdf" <<\ROWS
customer text 0x0 C:\\new\\(1)
date text 0x0 
total text 0x0 
paid button 0x2 Off
country choice 0x20000 F\\R
ROWS
}

test_unfit() {
    refuses "$programs/fill" "$samples/form-2pages.pdf" "$work/target.pdf" <<ROWS
2 usage:
2 usage: name0
2 usage: =x
2 usage: --forced name0=x
1 error.34819 name9=x
1 error.34819 name0=x r0.2=v1
1 error.33862 r0=
1 error.33862 ok0=Maybe
ROWS
    status 1 "$programs/fields" "$samples/letterhead.pdf"
    reports 34819 8803
}
