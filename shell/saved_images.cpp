#include "shell/saved_images.h"
