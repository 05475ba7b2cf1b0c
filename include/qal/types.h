#pragma once

/// All plain types of the contract: status, identifiers, texts, records, variants.
#include "qal/basic.h"
#include "qal/variant.h"
