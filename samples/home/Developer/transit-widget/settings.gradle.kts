rootProject.name = "TransitWidget"
include(":app")
