#pragma once

/// The one header that a host needs: every class of the library and the types that they speak in.

#include "vorquill21/files/file.hpp"
#include "vorquill21/filestream/file_stream.hpp"
#include "vorquill21/frame/types/array_view.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/failed_tests.hpp"
#include "vorquill21/frame/types/library_error.hpp"
#include "vorquill21/frame/types/number_text.hpp"
#include "vorquill21/frame/types/text.hpp"
#include "vorquill21/frame/types/variant.hpp"
#include "vorquill21/import/import_column_data.hpp"
#include "vorquill21/interpolate/interpolate.hpp"
#include "vorquill21/numeric/geometry.hpp"
#include "vorquill21/numeric/math_utils.hpp"
#include "vorquill21/numeric/statistics.hpp"
#include "vorquill21/numeric/trigonometry.hpp"
#include "vorquill21/platform/platform.hpp"
#include "vorquill21/text/string.hpp"
