#pragma once

/// The whole contract between the IDE and its coverage component.
#include "qal/columns.h"
#include "qal/command.h"
#include "qal/component.h"
#include "qal/coverage_services.h"
#include "qal/entry_points.h"
#include "qal/host.h"
#include "qal/ide_services.h"
#include "qal/ids.h"
#include "qal/program_services.h"
#include "qal/project_services.h"
#include "qal/reserve.h"
#include "qal/test_client.h"
#include "qal/types.h"
#include "qal/unknown.h"
#include "qal/view_client.h"
#include "qal/window_service.h"
