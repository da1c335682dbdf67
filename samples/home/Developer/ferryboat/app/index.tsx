import { Text, View } from 'react-native';

export default function Timetable() {
  return (
    <View>
      <Text>Next ferry: 10:40</Text>
    </View>
  );
}
