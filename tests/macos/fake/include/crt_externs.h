#pragma once

char*** _NSGetArgv();
