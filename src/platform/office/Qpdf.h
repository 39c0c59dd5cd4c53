#pragma once

// libqpdf, for all who use it. The clang that checks the sources does not get through this one of its headers
// in C++20, which nobody here needs: the others do with the name.
#ifdef __clang__
#define JSON_HH
class JSON;
#endif

#include <qpdf/Buffer.hh>
#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
#include <qpdf/QUtil.hh>
