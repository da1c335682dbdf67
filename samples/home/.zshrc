export ANDROID_HOME=$HOME/Library/Android/sdk
export PATH=$HOME/.volta/bin:$ANDROID_HOME/platform-tools:$PATH
