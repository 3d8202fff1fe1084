#!/bin/sh
# A stand-in worker that ends with status 3 before reading anything.
exit 3
