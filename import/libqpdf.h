#pragma once

/// All of libqpdf that the import uses. Its headers are included here alone.

// Tells them that nothing here uses a class of libqpdf's that is going away.
#define POINTERHOLDER_TRANSITION 4

// clang does not compile libqpdf's class JSON as C++20: it asks for a vector of it before it is
// complete. Only declarations that nothing here calls mention it.
#if defined(__clang__) && !defined(JSON_HH)
#define JSON_HH
#include <map>
#include <set>
#include <vector>
class JSON;
#endif

#include <qpdf/BufferInputSource.hh>
#include <qpdf/InputSource.hh>
#include <qpdf/Pipeline.hh>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFTokenizer.hh>
#include <qpdf/QPDFXRefEntry.hh>
#include <qpdf/QUtil.hh>
