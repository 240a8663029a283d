# Forms:
#   fields  the fields of the sample forms
#   fill    each kind is set, written and read again
#   unfit   arguments and values that are refused

# lists FILE checks that its fields are the lines of standard input, which have blanks for tabs and
# underlines for blanks, but a tab at the end of a line.
lists() {
    tr ' ' '\t' | sed 's/_$/\t/' | tr _ ' ' >"$work/wanted"
    "$programs/fields" "$1" >"$work/got"
    diff "$work/wanted" "$work/got" || fail "the fields of $1 are others"
}

test_fields() {
    lists "$samples/invoice-form.pdf" <<ROWS
customer text 0x0_
date text 0x0_
total text 0x0_
paid button 0x2 Off Yes
country choice 0x20000 DE DE,_FR,_IT
ROWS
    lists "$samples/form-2pages.pdf" <<ROWS
name0 text 0x0 x
ok0 button 0x2 Off Yes
ch0 choice 0x20000 A A,_B,_C
r0 button 0xC002 v1 v1,_v2
name1 text 0x0 x
ok1 button 0x2 Off Yes
ch1 choice 0x20000 A A,_B,_C
r1 button 0xC002 v1 v1,_v2
ROWS
}

# shows FILE NUMBER TEXT: so many appearances of the file show this text.
shows() {
    "$programs/recompress" none "$1" "$work/plain.pdf"
    code=$(printf %s "$3" | od -An -v -tx1 | tr -d ' \n' | tr a-f A-F)
    [ "$(grep -ac "<$code> Tj" "$work/plain.pdf")" -eq "$2" ] || fail "$1 does not show $3"
}

test_fill() {
    status 0 "$programs/fill" "$samples/form-2pages.pdf" "$work/filled.pdf" \
        name0=Turin=1 name1= ok1=Yes ch0=B r1=v2 r0=
    [ ! -s "$work/err" ] || fail "said: $(cat "$work/err")"
    lists "$work/filled.pdf" <<ROWS
name0 text 0x0 Turin=1
ok0 button 0x2 Off Yes
ch0 choice 0x20000 B A,_B,_C
r0 button 0xC002 Off v1,_v2
name1 text 0x0_
ok1 button 0x2 Yes Yes
ch1 choice 0x20000 A A,_B,_C
r1 button 0xC002 v2 v1,_v2
ROWS
    # Shown as set: the box by its state, of the radio buttons the second alone, texts by new looks.
    [ "$(grep -ac '/AS /Yes' "$work/filled.pdf")" -eq 1 ] || fail "the box is not shown as checked"
    [ "$(grep -ac '/AS /v[12]' "$work/filled.pdf")" -eq 1 ] || fail "the radio button is not shown"
    grep -aq '/NeedAppearances' "$work/filled.pdf" && fail "appearances are asked for"
    shows "$work/filled.pdf" 1 Turin=1
    shows "$work/filled.pdf" 1 B

    status 0 "$programs/fill" "$samples/invoice-form.pdf" "$work/filled.pdf" \
        'customer=C:\new\(1)' country=FR date=Ωμέγα
    grep -q '^warning: date: its font lacks U+03A9; ' "$work/err" || fail "nobody is told of the missing characters"
    grep -aq '/NeedAppearances true' "$work/filled.pdf" || fail "no appearances asked for"
    lists "$work/filled.pdf" <<\ROWS
customer text 0x0 C:\\new\\(1)
date text 0x0 Ωμέγα
total text 0x0_
paid button 0x2 Off Yes
country choice 0x20000 FR DE,_FR,_IT
ROWS
    status 0 "$programs/fill" --flatten "$samples/form-2pages.pdf" "$work/flat.pdf" name0=Turin
    shows "$work/flat.pdf" 1 Turin
    status 1 "$programs/fields" "$work/flat.pdf"
}

test_unfit() {
    refuses "$programs/fill" "$samples/form-2pages.pdf" "$work/target.pdf" <<ROWS
2 usage:
2 usage: name0
2 usage: =x
2 usage: --forced name0=x
1 error.34819.*/form-2pages.pdf:.There.is.no.field.name9;.near.to.it:.name0,.name1$ name9=x
1 error.34819.*.near.to.it:.name0,.name1$ Name=x
1 error.34819.*.near.to.it:.r0$ name0=x r0.2=v1
1 error.34819.*."fields.FILE".lists quantity=1
1 error.33862.*:.field.ok0:.it.has.no.state.Maybe;.it.takes:.Yes$ ok0=Maybe
1 error.33862.*:.field.ch0:.it.has.no.option.D;.it.takes:.A,.B,.C$ ch0=D
1 error.33862.*:.field.ch0:.it.takes.one.option.only;.it.takes:.A,.B,.C$ ch0=A ch0=B
1 error.65538 r0=v1 r0=v2
ROWS
    status 1 "$programs/fields" "$samples/letterhead.pdf"
    reports 34819 8803
}
